// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

// What hands do to the list of telegrams.

#include "TelegramList.h"

#include "PlainToolTip.h"
#include "TelegramHeader.h"
#include "TelegramRows.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int DragMilliseconds = 50; ///< between two rows past the edge

} // namespace

void TelegramList::GoTo(qint64 row)
{
    if (row < First() || row >= End())
        return;
    SetFollows(false);
    BringToSight(row);
    Press(row, Qt::NoModifier);
}

void TelegramList::SelectAll()
{
    if (End() > First()) {
        m_selection.Set(First(), End() - 1);
        viewport()->update();
        Q_EMIT SelectionChanged();
    }
}

void TelegramList::SelectRange(qint64 from, qint64 to)
{
    GoTo(from);
    BringToSight(to);
    Press(to, Qt::ShiftModifier);
}

/// Shift chooses from where the range began, Ctrl one more or one less.
void TelegramList::Press(qint64 row, Qt::KeyboardModifiers modifiers)
{
    const bool adds = modifiers.testFlag(Qt::ControlModifier);
    if (modifiers.testFlag(Qt::ShiftModifier) && m_anchor >= 0) {
        if (!adds)
            m_selection.Clear();
        m_selection.Add(m_anchor, row);
    } else {
        m_anchor = row;
        if (adds)
            m_selection.Toggle(row);
        else
            m_selection.Set(row, row);
    }
    const bool moved = m_current != row;
    m_current = row;
    viewport()->update();
    if (moved)
        TellCurrent();
    Q_EMIT SelectionChanged();
}

/// With Ctrl alone only the row in hand moves; the space bar then chooses it.
void TelegramList::Move(qint64 row, Qt::KeyboardModifiers modifiers)
{
    if (End() == First())
        return;
    row = std::clamp(row, First(), End() - 1);
    SetFollows(false);
    BringToSight(row);
    if (modifiers & Qt::ControlModifier && !(modifiers & Qt::ShiftModifier)) {
        m_current = row;
        viewport()->update();
        TellCurrent();
    } else {
        Press(row, modifiers & Qt::ShiftModifier);
    }
}

std::optional<qint64> TelegramList::TargetOf(const QKeyEvent &event) const
{
    const bool inHand = m_current >= 0;
    const qint64 from = inHand ? m_current : std::min(m_top + RowsSeen(), End()) - 1;
    switch (event.key()) {
    case Qt::Key_Up:
        return inHand ? from - 1 : from;
    case Qt::Key_Down:
        return inHand ? from + 1 : from;
    case Qt::Key_PageUp:
        return from - RowsSeen();
    case Qt::Key_PageDown:
        return from + RowsSeen();
    case Qt::Key_Home:
        return First();
    case Qt::Key_End:
        return End() - 1;
    default:
        return std::nullopt;
    }
}

void TelegramList::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::SelectAll)) {
        SelectAll();
        return;
    }
    if (const std::optional<qint64> target = TargetOf(*event)) {
        Move(*target, event->modifiers());
        if (event->key() == Qt::Key_End && !(event->modifiers() & Qt::ShiftModifier))
            SetFollows(true);
        return;
    }
    QScrollBar &across = *horizontalScrollBar();
    switch (event->key()) {
    case Qt::Key_Left:
        across.setValue(across.value() - across.singleStep());
        return;
    case Qt::Key_Right:
        across.setValue(across.value() + across.singleStep());
        return;
    case Qt::Key_Space:
        if (m_current >= 0)
            Press(m_current, event->modifiers());
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Q_EMIT DetailsWanted();
        return;
    default:
        QAbstractScrollArea::keyPressEvent(event);
    }
}

void TelegramList::wheelEvent(QWheelEvent *event)
{
    if (event->angleDelta().y() == 0) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    constexpr int Notch = 120;
    constexpr int RowsOfANotch = 3;
    // A fine wheel tells less than a row at a time.
    const int sum = m_wheel + event->angleDelta().y() * RowsOfANotch;
    m_wheel = sum % Notch;
    if (const int rows = sum / Notch; rows != 0)
        ScrollByHand(m_top - rows);
    event->accept();
}

qint64 TelegramList::RowAtPlace(int y) const
{
    const qint64 row = m_top + qint64(std::floor(double(y) / m_painter->RowHeight()));
    return row >= First() && row < End() ? row : -1;
}

void TelegramList::mousePressEvent(QMouseEvent *event)
{
    const qint64 row = RowAtPlace(event->position().toPoint().y());
    if (row < 0)
        return;
    SetFollows(false);
    if (event->button() == Qt::LeftButton) {
        Press(row, event->modifiers());
        m_hold.Begin();
    } else if (event->button() == Qt::RightButton && !m_selection.Contains(row)) {
        Press(row, Qt::NoModifier);
    }
}

void TelegramList::mouseMoveEvent(QMouseEvent *event)
{
    if (!m_hold.Holds())
        return;
    const int y = event->position().toPoint().y();
    const bool past = y < 0 || y >= viewport()->height();
    if (past && !m_dragging.isActive())
        m_dragging.start(DragMilliseconds, this);
    else if (!past)
        m_dragging.stop();
    const qint64 row = RowAtPlace(y);
    if (!past && row >= 0 && row != m_current)
        Press(row, Qt::ShiftModifier);
}

void TelegramList::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_dragging.timerId()) {
        QAbstractScrollArea::timerEvent(event);
        return;
    }
    const int y = viewport()->mapFromGlobal(QCursor::pos()).y();
    const int past = y < 0 ? y : y - viewport()->height();
    Move(m_current + past / m_painter->RowHeight() + (past < 0 ? -1 : 1), Qt::ShiftModifier);
}

void TelegramList::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton) {
        m_hold.End();
        m_dragging.stop();
    }
}

void TelegramList::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && RowAtPlace(event->position().toPoint().y()) >= 0)
        Q_EMIT DetailsWanted();
}

/// By key, some row is in hand from the first moment.
void TelegramList::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    const bool byKey =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    if (byKey && m_current < 0 && End() > First())
        Press(std::min(m_top + RowsSeen(), End()) - 1, Qt::NoModifier);
    viewport()->update();
    if (m_current >= 0)
        TellCurrent();
}

void TelegramList::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

bool TelegramList::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        ShowToolTip(*static_cast<QHelpEvent *>(event));
        return true;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

/// What has no room in its cell.
void TelegramList::ShowToolTip(QHelpEvent &event)
{
    const qint64 row = RowAtPlace(event.pos().y());
    const int column = m_header->logicalIndexAt(event.pos().x());
    const Telegram *telegram = column < 0 ? nullptr : RowAt(row);
    const bool ofBytes = column == int(TelegramColumn::Hex) || column == int(TelegramColumn::Text);
    QString text;
    if (telegram && !(ofBytes && telegram->HasBytes()))
        text = CellTextOf(row, *telegram, TelegramColumn(column));
    const qreal room = m_header->sectionSize(std::max(column, 0)) - 2 * TelegramPainter::Margin;
    if (m_painter->Metrics().horizontalAdvance(text) <= room)
        text.clear();
    QToolTip::showText(event.globalPos(), PlainToolTip(text), viewport());
}
