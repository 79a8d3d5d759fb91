// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QColor>
#include <QFont>
#include <QRawFont>
#include <QRectF>

#include <array>
#include <vector>

class QPainter;
class SequenceEditing;
class SequenceLayout;

/// Paints rows of a sequence while it is edited, glyph by glyph without shaping, at columns of a
/// fixed-pitch font. Every byte has its cell: control characters a picture, codes without a
/// character an empty box.
class SequencePainter final
{
  public:
    /// Which rows are painted, and in which colours.
    struct Part {
        qsizetype firstRow;
        qsizetype rowCount;
        QColor text;
        QColor selectionBack;
        QColor selectionText;
    };

    SequencePainter(const QFont &font, qreal devicePixelRatio);

    qreal Advance() const { return m_advance; }
    qreal RowHeight() const { return m_rowHeight; }

    /// Paints with the first row's top left corner at the painter's origin. The background is the
    /// caller's.
    void Paint(QPainter &painter, const SequenceEditing &editing, const SequenceLayout &layout,
               const Part &part) const;

  private:
    /// What is painted in one colour.
    struct Ink {
        std::vector<quint32> glyphs{};
        std::vector<QPointF> positions{};
        std::vector<QRectF> boxes{};
        struct Picture {
            QRectF cell;
            uchar byte;
        };
        std::vector<Picture> pictures{};
    };

    void CollectItem(Ink &ink, const SequenceEditing &editing, qsizetype at,
                     const QPointF &corner) const;
    void CollectByte(Ink &ink, uchar byte, const QPointF &corner) const;
    void DrawInk(QPainter &painter, const Ink &ink, const QColor &colour) const;

    QRawFont m_font;
    std::array<quint32, 256> m_glyphs{}; ///< 0 where the font has none
    qreal m_advance = 1;
    qreal m_rowHeight = 1;
    qreal m_baseline = 0;
    qreal m_unit = 1; ///< a dot of the pictures
};
