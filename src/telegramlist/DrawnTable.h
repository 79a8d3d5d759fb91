// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractScrollArea>

/// A table that draws its rows itself, and what assistive programs are told of it. Rows count from
/// 0, with the first one that exists; cells are places in the viewport's coordinates.
class DrawnTable : public QAbstractScrollArea
{
    Q_OBJECT

  public:
    explicit DrawnTable(QWidget *parent);

    virtual QStringList Headings() const = 0;
    virtual qint64 RowCount() const = 0;

    struct Seen {
        qint64 first = 0;
        qint64 count = 0;
    };
    virtual Seen SeenRows() const = 0;
    virtual QString CellText(qint64 row, int column) const = 0;
    /// Row -1 is the headings; empty for what is not shown.
    virtual QRect CellRect(qint64 row, int column) const = 0;

    /// The row in hand, or -1.
    virtual qint64 CurrentRow() const = 0;
    virtual bool IsChosen(qint64 row) const = 0;
    virtual qint64 ChosenCount() const = 0;
    virtual void Choose(qint64 row) = 0;

  protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

    /// What is drawn with depends on font, palette and screen, one of which is another now.
    virtual void MakeFace() = 0;
};
