// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractTableModel>
#include <QStringList>

#include <functional>

/// Rows of text that do not change once they are there, made as they are looked at.
class RowsModel final : public QAbstractTableModel
{
    Q_OBJECT

  public:
    /// What a row is told apart by, besides its words.
    enum class Look { Plain, Marked };

    struct Source {
        QStringList headings;
        QList<int> bytes; ///< columns that show bytes, in the font of the views
        std::function<QString(int row, int column)> text;
        std::function<Look(int row)> look;
    };

    explicit RowsModel(Source source, QObject *parent = nullptr);

    /// All rows are others now.
    void SetCount(int count);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The texts of a row, parted by tabs.
    QString RowText(int row) const;

  private:
    QVariant FontOf(const QModelIndex &index) const;

    Source m_source;
    int m_count = 0;
};
