// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequenceListModel.h"

#include <QStyledItemDelegate>

/// Paints the cells of a sequence list: the send button or the check box of the first column,
/// control characters of a sequence as pictures, and all else as usual. It never changes anything.
class SequenceListDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

  public:
    explicit SequenceListDelegate(const SequenceListModel &model, QObject *parent = nullptr);

    /// The row whose mark is held down by the mouse, -1 for none.
    void SetPressedRow(int row) { m_pressedRow = row; }

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;

  private:
    void PaintSequence(QPainter &painter, const QStyleOptionViewItem &cell,
                       const QByteArray &bytes) const;
    void PaintSendButton(QPainter &painter, const QStyleOptionViewItem &cell, int row) const;
    void PaintActiveBox(QPainter &painter, const QStyleOptionViewItem &cell, int row) const;

    const SequenceListModel &m_model;
    int m_pressedRow = -1;
};
