// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextCaret.h"

#include "RichTextLayout.h"
#include "RichTextModel.h"

#include <limits>
#include <utility>

void RichTextCaret::Move(Movement movement, bool select)
{
    switch (movement) {
    case Movement::NextRow:
        return MoveRows(1, select);
    case Movement::PreviousRow:
        return MoveRows(-1, select);
    case Movement::NextPage:
        return MoveRows(m_pageRows, select);
    case Movement::PreviousPage:
        return MoveRows(-m_pageRows, select);
    case Movement::RowEnd:
        return PlaceInRow(Row(), std::numeric_limits<int>::max(), select);
    default:
        return Place(Destination(movement, select), select);
    }
}

qint64 RichTextCaret::Destination(Movement movement, bool select) const
{
    const qint64 caret = m_model.Caret();
    const bool leavesSelection = m_model.HasSelection() && !select;
    switch (movement) {
    case Movement::NextCharacter:
        return leavesSelection ? m_model.SelectionEnd() : RichTextSteps::Next(m_model, caret);
    case Movement::PreviousCharacter:
        return leavesSelection ? m_model.SelectionStart() : RichTextSteps::Previous(m_model, caret);
    case Movement::NextWord:
        return RichTextSteps::NextWord(m_model, caret);
    case Movement::PreviousWord:
        return RichTextSteps::PreviousWord(m_model, caret);
    case Movement::RowStart:
        return m_layout.RowStart(Row());
    case Movement::Begin:
        return m_model.Begin();
    case Movement::End:
        return m_model.End();
    default:
        return caret;
    }
}

void RichTextCaret::Press(qsizetype row, double column, Unit unit, bool extend)
{
    m_unit = unit;
    m_pressed = UnitAt(row, column);
    if (unit == Unit::Character) {
        PlaceInRow(row, column, extend);
        m_pressed = {m_model.Anchor(), m_model.Anchor()};
        return;
    }
    m_rowEndAt = m_wantedColumn = -1;
    m_model.Select(m_pressed.from, m_pressed.to);
}

void RichTextCaret::DragTo(qsizetype row, double column)
{
    if (m_unit == Unit::Character)
        return PlaceInRow(row, column, true);
    // What was pressed stays selected; the caret is on the side of the mouse.
    const RichTextSteps::Span reached = UnitAt(row, column);
    const qint64 from = qMax(m_pressed.from, m_model.Begin());
    const qint64 to = qMax(m_pressed.to, m_model.Begin());
    if (reached.from < from)
        m_model.Select(to, reached.from);
    else
        m_model.Select(from, qMax(to, reached.to));
}

qsizetype RichTextCaret::Row() const
{
    const qint64 caret = m_model.Caret();
    const qsizetype row = m_layout.RowOf(caret);
    const bool meetsWrap = caret == m_rowEndAt && row > 0 && m_layout.RowStart(row) == caret &&
                           m_layout.RowTextEnd(row - 1) == caret;
    return meetsWrap ? row - 1 : row;
}

int RichTextCaret::Column() const
{
    return m_layout.ColumnOf(Row(), m_model.Caret());
}

void RichTextCaret::Place(qint64 position, bool select)
{
    m_rowEndAt = m_wantedColumn = -1;
    m_model.Select(select ? m_model.Anchor() : position, position);
}

void RichTextCaret::PlaceInRow(qsizetype row, double column, bool select)
{
    const qint64 position = m_layout.PositionAt(row, column);
    const bool atRowEnd = m_layout.RowOf(position) != row;
    m_wantedColumn = -1;
    m_rowEndAt = atRowEnd ? position : -1;
    m_model.Select(select ? m_model.Anchor() : position, position);
}

void RichTextCaret::MoveRows(qsizetype rows, bool select)
{
    const int wanted = m_wantedColumn >= 0 ? m_wantedColumn : Column();
    const qsizetype row = qBound<qsizetype>(0, Row() + rows, m_layout.RowCount() - 1);
    PlaceInRow(row, wanted, select);
    m_wantedColumn = wanted;
}

/// The word or line under a column, which is a character's, not the nearest gap between two.
RichTextSteps::Span RichTextCaret::UnitAt(qsizetype row, double column) const
{
    const qint64 position = m_layout.PositionAt(row, column - 0.5);
    return m_unit == Unit::Line ? RichTextSteps::LineAt(m_model, position)
                                : RichTextSteps::WordAt(m_model, position);
}
