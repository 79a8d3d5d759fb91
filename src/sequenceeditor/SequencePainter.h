// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ByteInk.h"

#include <QColor>

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

    qreal Advance() const { return m_face.Advance(); }
    qreal RowHeight() const { return m_rowHeight; }

    /// Paints with the first row's top left corner at the painter's origin. The background is the
    /// caller's.
    void Paint(QPainter &painter, const SequenceEditing &editing, const SequenceLayout &layout,
               const Part &part) const;

  private:
    void CollectItem(ByteInk &ink, const SequenceEditing &editing, qsizetype at,
                     QPointF corner) const;

    ByteFace m_face;
    qreal m_rowHeight = 1;
    qreal m_baseline = 0;
};
