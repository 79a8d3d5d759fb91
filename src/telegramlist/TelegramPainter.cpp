// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramPainter.h"

#include "DisplaySettings.h"
#include "FixedPitchFont.h"
#include "Telegram.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace
{

constexpr qreal ReadableContrast = 4.5;
constexpr int RowMargin = 1; ///< above and below the text

QPalette::ColorGroup GroupOf(const TelegramPainter::State &state)
{
    return state.active ? QPalette::Active : QPalette::Inactive;
}

/// One ground stands between the columns of bytes and all that is right of them.
QRectF RoomFrom(const TelegramPainter::Cells &cells, TelegramColumn first)
{
    QRectF room;
    for (size_t column = size_t(first); column < cells.size(); ++column)
        room |= cells[column];
    return room;
}

/// Something was wrong with it.
bool IsAlarming(const Telegram *telegram)
{
    constexpr auto Alarms = Telegram::Damaged | Telegram::Break | Telegram::Overrun |
                            Telegram::Lost | Telegram::Unreadable | Telegram::ChecksumWrong;
    return telegram && telegram->marks & Telegram::Marks(Alarms);
}

constexpr std::array<char, 16> Digits = {'0', '1', '2', '3', '4', '5', '6', '7',
                                         '8', '9', 'A', 'B', 'C', 'D', 'E', 'F'};

} // namespace

TelegramPainter::TelegramPainter(const QFont &font, const DisplaySettings &display,
                                 const QPalette &palette, qreal devicePixelRatio)
    : m_font(font),
      m_bold(font),
      m_metrics(font),
      m_palette(palette),
      m_colours(display, palette),
      m_styles{display.styles[0].colour, display.styles[1].colour, display.styles[2].colour},
      m_face(FixedPitchFont::ViewFont(), devicePixelRatio, ByteFace::Controls::Pictures)
{
    m_bold.setBold(true);
    const QRawFont &raw = m_face.Font();
    const qreal bytes = raw.ascent() + raw.descent();
    m_rowHeight = int(std::ceil(std::max(bytes, m_metrics.height()))) + 2 * RowMargin;
    m_baseline = std::round((m_rowHeight - bytes) / 2 + raw.ascent());
}

QColor TelegramPainter::TextColour(const State &state) const
{
    if (state.selected)
        return m_palette.color(GroupOf(state), QPalette::HighlightedText);
    const QColor text = m_palette.color(GroupOf(state), QPalette::Text);
    if (ViewColours::Contrast(text, m_colours.Ground()) >= ReadableContrast)
        return text;
    return ViewColours::Contrast(Qt::black, m_colours.Ground()) > ReadableContrast ? Qt::black
                                                                                   : Qt::white;
}

QColor TelegramPainter::DirectionColour(int direction) const
{
    const auto style = size_t(std::clamp(direction, 0, int(m_styles.size()) - 1));
    return m_colours.TextOf(m_styles[style]);
}

/// So many tenths of a colour on the ground.
QColor TelegramPainter::Mixed(const QColor &colour, int tenths) const
{
    const QColor ground = m_colours.Ground();
    const auto between = [tenths](int one, int other) {
        return (one * tenths + other * (10 - tenths)) / 10;
    };
    return {between(colour.red(), ground.red()), between(colour.green(), ground.green()),
            between(colour.blue(), ground.blue())};
}

void TelegramPainter::Paint(QPainter &painter, const Cells &cells, const Row &row,
                            const State &state)
{
    const QRectF all = RoomFrom(cells, TelegramColumn::Number);
    if (state.selected)
        painter.fillRect(all, m_palette.color(GroupOf(state), QPalette::Highlight));
    painter.setFont(m_font);
    const QColor text = TextColour(state);
    if (row.telegram && row.telegram->marks & Telegram::Gap) {
        painter.setPen(Mixed(TextColour({}), 3));
        painter.drawLine(all.topLeft() + QPointF(0, 0.5), all.topRight() + QPointF(0, 0.5));
    }
    for (int column = 0; column < TelegramColumnCount; ++column) {
        const auto place = size_t(column);
        if (cells[place].isEmpty() || row.texts[place].isEmpty())
            continue;
        const bool ofPort = column == int(TelegramColumn::Port) && row.telegram;
        const bool event = row.telegram && !row.telegram->HasBytes();
        QColor colour = ofPort && !event ? DirectionColour(row.telegram->direction) : text;
        if (state.selected)
            colour = text;
        painter.setPen(column == int(TelegramColumn::Number) && !state.selected ? Mixed(text, 7)
                                                                                : colour);
        painter.setFont(column == int(TelegramColumn::Marks) && IsAlarming(row.telegram) ? m_bold
                                                                                         : m_font);
        const QRectF room = cells[place].adjusted(Margin, 0, -Margin, 0);
        const bool right = TelegramColumns::RowOf(column).right;
        painter.drawText(room, int(Qt::AlignVCenter | (right ? Qt::AlignRight : Qt::AlignLeft)),
                         m_metrics.elidedText(row.texts[place], Qt::ElideRight, room.width() + 1));
    }
    if (!row.event.isEmpty())
        PaintEvent(painter, cells, row, state);
    else if (row.telegram)
        PaintBytes(cells, row, state);
    if (state.current) {
        painter.setPen(QPen(text, 1, Qt::DotLine));
        painter.drawRect(all.adjusted(0.5, 0.5, -0.5, -0.5));
    }
}

/// In italics, so that it does not pass for a text of the line.
void TelegramPainter::PaintEvent(QPainter &painter, const Cells &cells, const Row &row,
                                 const State &state)
{
    const QRectF room = RoomFrom(cells, TelegramColumn::Hex).adjusted(Margin, 0, -Margin, 0);
    QFont italic = m_font;
    italic.setItalic(true);
    painter.setFont(italic);
    painter.setPen(state.selected ? TextColour(state) : m_colours.TextOf(m_styles[2]));
    painter.drawText(room, Qt::AlignVCenter,
                     QFontMetricsF(italic).elidedText(row.event, Qt::ElideRight, room.width()));
}

void TelegramPainter::PaintBytes(const Cells &cells, const Row &row, const State &state)
{
    const Ink ink = state.selected                 ? Chosen
                    : row.telegram->direction == 0 ? Direction1
                                                   : Direction2;
    AddText(ink, cells[size_t(TelegramColumn::Hex)], row.telegram->bytes, true);
    AddText(ink, cells[size_t(TelegramColumn::Text)], row.telegram->bytes, false);
}

/// As many bytes as there is room for; three points stand for the others.
void TelegramPainter::AddText(Ink ink, const QRectF &cell, QByteArrayView bytes, bool hex)
{
    const qreal advance = m_face.Advance();
    const qreal pitch = hex ? 3 * advance : advance;
    const qreal room = cell.width() - 2 * Margin + (hex ? advance : 0);
    if (room <= 0)
        return;
    constexpr qreal Rounding = 0.01; // of widths that are sums of such as it
    auto most = qsizetype(room / pitch + Rounding);
    const bool cut = most < bytes.size();
    if (cut)
        most = std::max<qsizetype>(most - (hex ? 1 : 3), 0);
    ByteInk &into = m_inks[ink];
    const auto add = [&](uchar byte, qreal left) {
        into.Add(m_face, byte, {left, cell.top(), advance, cell.height()}, m_baseline);
    };
    qreal left = cell.left() + Margin;
    for (qsizetype i = 0; i < std::min(most, bytes.size()); ++i, left += pitch) {
        const auto byte = uchar(bytes[i]);
        if (hex) {
            add(uchar(Digits[byte >> 4U]), left);
            add(uchar(Digits[byte & 15U]), left + advance);
        } else {
            add(byte, left);
        }
    }
    for (int point = 0; cut && point < 3 && left + advance <= cell.right(); ++point)
        add('.', std::exchange(left, left + (hex ? advance * 0.6 : advance)));
}

void TelegramPainter::Finish(QPainter &painter)
{
    m_inks[Direction1].Draw(painter, m_face, DirectionColour(0));
    m_inks[Direction2].Draw(painter, m_face, DirectionColour(1));
    m_inks[Chosen].Draw(painter, m_face, m_palette.color(QPalette::HighlightedText));
}
