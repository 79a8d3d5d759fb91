// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaretMovement.h"
#include "RichTextSteps.h"

class RichTextLayout;
class RichTextModel;

/// Moves caret and selection of a model over the rows of its layout, as keys and mouse ask. The
/// layout must be up to date with each call. Model and layout must outlive it.
class RichTextCaret final
{
  public:
    using Movement = CaretMovement;
    using Unit = CaretUnit;

    RichTextCaret(RichTextModel &model, const RichTextLayout &layout)
        : m_model(model), m_layout(layout)
    {
    }

    /// Rows that a page movement passes.
    void SetPageRows(qsizetype rows) { m_pageRows = rows; }
    /// With select the anchor stays where it is.
    void Move(Movement movement, bool select);

    /// A mouse button goes down at a column of a row; with extend the anchor stays.
    void Press(qsizetype row, double column, Unit unit, bool extend);
    void DragTo(qsizetype row, double column);

    /// The row that shows the caret: at the end of a wrapped row it can stand in either of two.
    qsizetype Row() const;
    int Column() const;

  private:
    void Place(qint64 position, bool select);
    void PlaceInRow(qsizetype row, double column, bool select);
    void MoveRows(qsizetype rows, bool select);
    qint64 Destination(Movement movement, bool select) const;
    RichTextSteps::Span UnitAt(qsizetype row, double column) const;

    RichTextModel &m_model;
    const RichTextLayout &m_layout;
    qsizetype m_pageRows = 1;
    int m_wantedColumn = -1; ///< kept while the caret moves through shorter rows
    qint64 m_rowEndAt = -1;  ///< a caret here is shown at the end of the earlier row
    Unit m_unit = Unit::Character;
    RichTextSteps::Span m_pressed{0, 0};
};
