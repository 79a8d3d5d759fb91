// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ResponseStatistics.h"

#include <QAbstractTableModel>

/// What was counted, a row for each key.
class ResponsesModel final : public QAbstractTableModel
{
    Q_OBJECT

  public:
    using QAbstractTableModel::QAbstractTableModel;

    enum Column {
        Sequence,
        Event,
        Count,
        Answered,
        Unanswered,
        Last,
        Least,
        Median,
        Percentile95,
        Greatest,
        Columns
    };
    /// Of a number, for sorting.
    static constexpr int NumberRole = Qt::UserRole;

    /// By key. Rows that were there stay what they are.
    void Show(const QList<ResponseRow> &rows, bool twoChannels);
    const QList<ResponseRow> &Rows() const { return m_rows; }
    /// Negative if there is none.
    int RowOf(const ResponseKey &key) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    QString Text(const ResponseRow &row, int column) const;
    static qint64 NumberIn(const ResponseRow &row, int column);

    QList<ResponseRow> m_rows;
    bool m_twoChannels = false;
};
