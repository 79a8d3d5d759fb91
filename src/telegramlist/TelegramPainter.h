// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ByteFace.h"
#include "ByteInk.h"
#include "TelegramColumns.h"
#include "ViewColours.h"

#include <QFontMetricsF>
#include <QPalette>
#include <QString>

#include <array>

class QPainter;
struct Telegram;

/// What a row of the list looks like. Bytes are collected over all rows and drawn at the end.
class TelegramPainter
{
  public:
    /// The font is that of all but the bytes.
    TelegramPainter(const QFont &font, const DisplaySettings &display, const QPalette &palette,
                    qreal devicePixelRatio);

    int RowHeight() const { return m_rowHeight; }
    const QFontMetricsF &Metrics() const { return m_metrics; }
    /// Of a digit of HEX or of a byte of the text.
    qreal ByteAdvance() const { return m_face.Advance(); }
    QColor Ground() const { return m_colours.Ground(); }

    /// Places of the columns in pixels; empty for those that are not shown.
    using Cells = std::array<QRectF, TelegramColumnCount>;

    /// How a row stands in the list.
    struct State {
        bool selected = false;
        bool current = false; ///< and the list has the focus
        bool active = true;   ///< the window has it
    };

    /// What stands in the columns; HEX and text are those of the telegram. Null paints that the row
    /// is not there yet.
    struct Row {
        const Telegram *telegram = nullptr;
        std::array<QString, TelegramColumnCount> texts;
        QString event; ///< across the columns of bytes
    };

    void Paint(QPainter &painter, const Cells &cells, const Row &row, const State &state);
    /// Draws the bytes of all rows.
    void Finish(QPainter &painter);

    /// Room beside the text of a cell.
    static constexpr int Margin = 4;

  private:
    enum Ink { Direction1, Direction2, Chosen, InkCount };

    QColor TextColour(const State &state) const;
    QColor DirectionColour(int direction) const;
    QColor Mixed(const QColor &colour, int tenths) const;
    void PaintBytes(const Cells &cells, const Row &row, const State &state);
    void PaintEvent(QPainter &painter, const Cells &cells, const Row &row, const State &state);
    void AddText(Ink ink, const QRectF &cell, QByteArrayView bytes, bool hex);

    QFont m_font;
    QFont m_bold;
    QFontMetricsF m_metrics;
    QPalette m_palette;
    ViewColours m_colours;
    std::array<qint32, 3> m_styles; ///< stored colours by StyleIndex
    ByteFace m_face;
    qreal m_baseline = 0; ///< of the bytes, below the top of a row
    int m_rowHeight = 1;
    std::array<ByteInk, InkCount> m_inks;
};
