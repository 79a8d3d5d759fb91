// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramList.h"

#include "DrawnTableAccessible.h"
#include "TelegramHeader.h"
#include "TelegramRows.h"
#include "TelegramText.h"

#include <QDateTime>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

/// How far back the row of the same direction is looked for.
constexpr qint64 MostRowsBack = 64;

/// Whether the text of a cell is all that is painted of it, in one way.
bool IsPlain(TelegramColumn column)
{
    return column != TelegramColumn::Hex && column != TelegramColumn::Text &&
           column != TelegramColumn::Marks;
}

/// The scroll bar counts in steps of so many bits of rows: it is an int, with room to spare.
int BitsOfAStep(qint64 rows)
{
    int bits = 0;
    while ((rows >> bits) > std::numeric_limits<int>::max() / 4)
        ++bits;
    return bits;
}

} // namespace

TelegramList::TelegramList(QWidget *parent)
    : DrawnTable(parent), m_header(new TelegramHeader(this)), m_hold(*viewport())
{
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // what comes and goes would move the columns
    viewport()->setAutoFillBackground(false);
    viewport()->setCursor(Qt::ArrowCursor);
    MakeFace();
    connect(m_header, &TelegramHeader::Changed, this, [this] {
        SetBars();
        viewport()->update();
    });
    connect(&m_hold, &MouseHold::Lost, this, [this] { m_dragging.stop(); });
}

TelegramList::~TelegramList() = default;

void TelegramList::Show(TelegramRows *rows)
{
    if (m_rows)
        m_rows->disconnect(this);
    m_rows = rows;
    if (rows) {
        connect(rows, &TelegramRows::Changed, this, &TelegramList::TakeChange);
        connect(rows, &TelegramRows::Reset, this, &TelegramList::TakeReset);
        connect(rows, &TelegramRows::Fetched, this, [this] {
            viewport()->update();
            TellCurrent();
        });
    }
    TakeReset();
}

void TelegramList::SetColours(const DisplaySettings &display)
{
    m_display = display;
    MakeFace();
}

void TelegramList::Refresh()
{
    viewport()->update();
}

qint64 TelegramList::First() const
{
    return m_rows ? m_rows->First() : 0;
}

qint64 TelegramList::End() const
{
    return m_rows ? m_rows->End() : 0;
}

/// Whole rows.
qint64 TelegramList::RowsSeen() const
{
    return std::max(1, viewport()->height() / m_painter->RowHeight());
}

qint64 TelegramList::LastTop() const
{
    return std::max(First(), End() - RowsSeen());
}

const Telegram *TelegramList::RowAt(qint64 row) const
{
    return m_rows && row >= First() && row < End() ? m_rows->Row(row) : nullptr;
}

void TelegramList::TakeChange()
{
    const TelegramSelection before = m_selection;
    m_selection.DropBefore(First());
    m_anchor = std::max(m_anchor, m_anchor < 0 ? -1 : First());
    const bool gone = m_current >= 0 && m_current < First();
    if (gone)
        m_current = -1;
    m_top = m_follows ? LastTop() : std::clamp(m_top, First(), LastTop());
    SetBars();
    viewport()->update();
    if (gone || m_current == End() - 1)
        TellCurrent();
    if (m_selection != before)
        Q_EMIT SelectionChanged();
}

/// What was chosen is so no more; who knows what it was may choose it again.
void TelegramList::TakeReset()
{
    m_selection.Clear();
    m_current = m_anchor = -1;
    m_seenWidths = {};
    SetSuitedWidths();
    TakeChange();
    TellCurrent();
    Q_EMIT SelectionChanged();
}

void TelegramList::TellCurrent()
{
    Q_EMIT CurrentChanged(m_current);
    if (hasFocus() && m_current >= 0)
        DrawnTableAccessible::TellCurrent(*this);
}

void TelegramList::SetFollows(bool follows)
{
    if (follows)
        ScrollTo(LastTop());
    if (std::exchange(m_follows, follows) != follows)
        Q_EMIT FollowsChanged(follows);
}

void TelegramList::ScrollTo(qint64 top)
{
    m_top = std::clamp(top, First(), LastTop());
    SetBars();
    viewport()->update();
}

void TelegramList::ScrollByHand(qint64 top)
{
    ScrollTo(top);
    SetFollows(m_top == LastTop());
}

void TelegramList::BringToSight(qint64 row)
{
    const qint64 seen = RowsSeen();
    if (row < m_top - 1 || row > m_top + seen)
        ScrollTo(row - seen / 2);
    else
        ScrollTo(std::clamp(m_top, row - seen + 1, row));
}

void TelegramList::SetBars()
{
    const QScopedValueRollback<bool> setting(m_setting, true);
    const int bits = BitsOfAStep(LastTop() - First());
    QScrollBar &bar = *verticalScrollBar();
    bar.setRange(0, int((LastTop() - First()) >> bits));
    bar.setPageStep(int(std::max<qint64>(RowsSeen() >> bits, 1)));
    bar.setSingleStep(1);
    bar.setValue(int((m_top - First()) >> bits));
    QScrollBar &across = *horizontalScrollBar();
    across.setRange(0, std::max(0, m_header->length() - viewport()->width()));
    across.setPageStep(viewport()->width());
    across.setSingleStep(int(m_painter->ByteAdvance()) * 3);
    m_header->setOffset(across.value());
}

void TelegramList::scrollContentsBy(int, int dy)
{
    m_header->setOffset(horizontalScrollBar()->value());
    if (dy != 0 && !m_setting) {
        const QScrollBar &bar = *verticalScrollBar();
        const int bits = BitsOfAStep(LastTop() - First());
        ScrollByHand(bar.value() == bar.maximum() ? LastTop()
                                                  : First() + (qint64(bar.value()) << bits));
    }
    viewport()->update();
}

void TelegramList::MakeFace()
{
    m_painter =
        std::make_unique<TelegramPainter>(font(), m_display, palette(), devicePixelRatioF());
    SetSuitedWidths();
    ScrollTo(m_follows ? LastTop() : m_top);
}

void TelegramList::SetSuitedWidths()
{
    TelegramColumns::Widths widths{};
    const QFontMetricsF metrics(m_header->font());
    for (int column = 0; column < TelegramColumnCount; ++column) {
        const TelegramColumnRow &row = TelegramColumns::RowOf(column);
        const auto room = [this](const char *text) {
            return int(m_painter->Metrics().horizontalAdvance(QString::fromUtf8(text)));
        };
        const qreal heading = metrics.horizontalAdvance(QString::fromUtf8(row.heading)) + 2;
        const int seen = std::min(m_seenWidths[size_t(column)], room(row.most));
        widths[size_t(column)] =
            std::max({int(heading), room(row.least), seen}) + 2 * TelegramPainter::Margin + 1;
    }
    constexpr int LeastBytes = 8;
    widths[size_t(TelegramColumn::Hex)] =
        int(std::ceil(m_painter->ByteAdvance() * (3 * LeastBytes - 1))) +
        2 * TelegramPainter::Margin;
    widths[size_t(TelegramColumn::Text)] =
        int(std::ceil(m_painter->ByteAdvance() * LeastBytes)) + 2 * TelegramPainter::Margin;
    m_header->SetSuited(widths);
}

void TelegramList::resizeEvent(QResizeEvent *event)
{
    const int height = m_header->sizeHint().height();
    setViewportMargins(0, height, 0, 0);
    const QRect area = viewport()->geometry();
    m_header->setGeometry(area.left(), area.top() - height, area.width(), height);
    m_header->Fit(area.width());
    ScrollTo(m_follows ? LastTop() : m_top);
    DrawnTable::resizeEvent(event);
}

TelegramPainter::Cells TelegramList::CellsAt(qreal top) const
{
    TelegramPainter::Cells cells;
    for (int column = 0; column < TelegramColumnCount; ++column) {
        if (!m_header->isSectionHidden(column))
            cells[size_t(column)] = {qreal(m_header->sectionViewportPosition(column)), top,
                                     qreal(m_header->sectionSize(column)),
                                     qreal(m_painter->RowHeight())};
    }
    return cells;
}

void TelegramList::paintEvent(QPaintEvent *)
{
    if (const QDate today = QDate::currentDate(); today != m_today) {
        m_today = today;
        m_dayBegins = today.startOfDay().toMSecsSinceEpoch() * 1'000'000;
        m_dayEnds = today.addDays(1).startOfDay().toMSecsSinceEpoch() * 1'000'000;
    }
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), m_painter->Ground());
    bool grown = false;
    const qint64 end = std::min(End(), m_top + RowsSeen() + 1);
    for (qint64 row = m_top; row < end; ++row) {
        TelegramPainter::Row shown;
        shown.telegram = RowAt(row);
        if (shown.telegram) {
            for (int column = 0; column < TelegramColumnCount; ++column) {
                if (!m_header->isSectionHidden(column) && IsPlain(TelegramColumn(column)))
                    shown.texts[size_t(column)] =
                        CellTextOf(row, *shown.telegram, TelegramColumn(column));
            }
            shown.texts[size_t(TelegramColumn::Marks)] = MarksOf(*shown.telegram, false);
            shown.event = TelegramCells::EventText(*shown.telegram);
            grown = NoteWidths(shown) || grown;
        } else {
            shown.texts[size_t(TelegramColumn::Time)] = QStringLiteral("\u2026");
        }
        const qreal top = qreal(row - m_top) * m_painter->RowHeight();
        m_painter->Paint(
            painter, CellsAt(top), shown,
            {m_selection.Contains(row), row == m_current && hasFocus(), isActiveWindow()});
    }
    m_painter->Finish(painter);
    if (grown)
        QMetaObject::invokeMethod(this, &TelegramList::SetSuitedWidths, Qt::QueuedConnection);
}

/// Whether a column could have more room.
bool TelegramList::NoteWidths(const TelegramPainter::Row &row)
{
    bool grown = false;
    for (int column = 0; column < TelegramColumnCount; ++column) {
        qint32 &seen = m_seenWidths[size_t(column)];
        const int width =
            int(std::ceil(m_painter->Metrics().horizontalAdvance(row.texts[size_t(column)])));
        grown = grown || width > seen;
        seen = std::max(seen, width);
    }
    return grown;
}

bool TelegramList::IsOfToday(qint64 wall) const
{
    return wall >= m_dayBegins && wall < m_dayEnds;
}

void TelegramList::SetBase(TelegramBase base)
{
    m_base = base;
    const Telegram *marked = base == TelegramBase::MarkedRow ? RowAt(m_current) : nullptr;
    m_baseTime = marked ? std::optional(marked->time) : std::nullopt;
    viewport()->update();
}

std::optional<qint64> TelegramList::DifferenceOf(qint64 row, const Telegram &telegram) const
{
    if (m_base == TelegramBase::MarkedRow)
        return m_baseTime ? std::optional(telegram.time - *m_baseTime) : std::nullopt;
    const bool same = m_base == TelegramBase::SameDirection;
    if (same && !telegram.HasBytes())
        return std::nullopt;
    const qint64 last = std::max(First(), row - (same ? MostRowsBack : 1));
    for (qint64 before = row - 1; before >= last; --before) {
        const Telegram *other = RowAt(before);
        if (!other)
            break;
        if (!same || (other->HasBytes() && other->direction == telegram.direction))
            return telegram.time - other->time;
    }
    return std::nullopt;
}

QString TelegramList::CellTextOf(qint64 row, const Telegram &telegram, TelegramColumn column) const
{
    switch (column) {
    case TelegramColumn::Number:
        return QString::number(telegram.number);
    case TelegramColumn::Time:
        return TelegramCells::TimeText(telegram.wall, !IsOfToday(telegram.wall));
    case TelegramColumn::Difference: {
        const std::optional<qint64> difference = DifferenceOf(row, telegram);
        return difference ? TelegramCells::MillisecondsText(*difference) : QString();
    }
    case TelegramColumn::Port:
        return TelegramCells::PortText(telegram);
    case TelegramColumn::Length:
        return telegram.HasBytes() ? QString::number(telegram.bytes.size()) : QString();
    case TelegramColumn::Hex:
        return telegram.HasBytes() ? TelegramText::Hex(telegram.bytes)
                                   : TelegramCells::EventText(telegram);
    case TelegramColumn::Text:
        return TelegramText::Characters(telegram.bytes);
    case TelegramColumn::Name:
        return telegram.HasBytes() ? TelegramText::Names(telegram) : QString();
    case TelegramColumn::Response:
        return telegram.response < 0 ? QString()
                                     : TelegramCells::MillisecondsText(telegram.response);
    case TelegramColumn::Marks:
        break;
    }
    return MarksOf(telegram, true);
}

/// A gap is drawn as a line, and told in words elsewhere.
QString TelegramList::MarksOf(const Telegram &telegram, bool withGap) const
{
    QStringList marks = {NoteFor(telegram), TelegramCells::MarksText(telegram, withGap)};
    marks.removeAll(QString());
    return marks.join(QStringLiteral(", "));
}

QString TelegramList::NoteFor(const Telegram &telegram) const
{
    const std::optional<QString> note = NoteOf ? NoteOf(telegram) : std::nullopt;
    if (!note)
        return {};
    return QStringLiteral("\u2691 ") + // a flag
           (note->isEmpty() ? QStringLiteral("bookmark") : *note);
}

QStringList TelegramList::Texts(qint64 row) const
{
    QStringList texts;
    const Telegram *telegram = RowAt(row);
    for (int column = 0; telegram && column < TelegramColumnCount; ++column) {
        if (!m_header->isSectionHidden(column))
            texts += CellTextOf(row, *telegram, TelegramColumn(column));
    }
    return texts;
}

QStringList TelegramList::Headings() const
{
    return TelegramColumns::Headings();
}

qint64 TelegramList::RowCount() const
{
    return End() - First();
}

DrawnTable::Seen TelegramList::SeenRows() const
{
    return {m_top - First(), std::min(RowsSeen(), End() - m_top)};
}

QString TelegramList::CellText(qint64 row, int column) const
{
    const Telegram *telegram = RowAt(First() + row);
    return telegram ? CellTextOf(First() + row, *telegram, TelegramColumn(column)) : QString();
}

QRect TelegramList::CellRect(qint64 row, int column) const
{
    const qint64 inSight = First() + row - m_top;
    if (m_header->isSectionHidden(column) || (row >= 0 && (inSight < 0 || inSight > RowsSeen())))
        return {};
    const int left = m_header->sectionViewportPosition(column);
    const int width = m_header->sectionSize(column);
    return row < 0
               ? QRect(left, -m_header->height(), width, m_header->height())
               : QRect(left, int(inSight) * m_painter->RowHeight(), width, m_painter->RowHeight());
}

qint64 TelegramList::CurrentRow() const
{
    return m_current < 0 ? -1 : m_current - First();
}

bool TelegramList::IsChosen(qint64 row) const
{
    return m_selection.Contains(First() + row);
}

void TelegramList::Choose(qint64 row)
{
    GoTo(First() + row);
}
