// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequencePainter.h"

#include "ByteLook.h"
#include "SequenceEditing.h"
#include "SequenceLayout.h"
#include "SequenceText.h"

#include <QPainter>

#include <cmath>

SequencePainter::SequencePainter(const QFont &font, qreal devicePixelRatio)
    : m_face(font, devicePixelRatio, ByteFace::Controls::Pictures)
{
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1;
    const auto whole = [ratio](qreal length) { return std::ceil(length * ratio) / ratio; };
    const qreal text = whole(m_face.Font().ascent()) + whole(m_face.Font().descent());
    m_rowHeight = text + whole(2); // room between the grounds of the pictures
    m_baseline = whole((m_rowHeight - text) / 2) + whole(m_face.Font().ascent());
}

void SequencePainter::Paint(QPainter &painter, const SequenceEditing &editing,
                            const SequenceLayout &layout, const Part &part) const
{
    ByteInk plain;
    ByteInk selected;
    const qsizetype endRow = qMin(part.firstRow + part.rowCount, layout.RowCount());
    for (qsizetype row = part.firstRow; row < endRow; ++row) {
        QPointF corner(0, qreal(row - part.firstRow) * m_rowHeight);
        for (qsizetype at = layout.RowStart(row); at < layout.RowEnd(row); ++at) {
            const bool isSelected = at >= editing.SelectionStart() && at < editing.SelectionEnd();
            const bool goesOn = at + 1 < qMin(editing.SelectionEnd(), layout.RowEnd(row));
            const int columns = goesOn ? layout.PitchOf(at) : layout.WidthOf(at);
            if (isSelected)
                painter.fillRect(QRectF(corner, QSizeF(columns * m_face.Advance(), m_rowHeight)),
                                 part.selectionBack);
            CollectItem(isSelected ? selected : plain, editing, at, corner);
            corner.rx() += layout.PitchOf(at) * m_face.Advance();
        }
    }
    plain.Draw(painter, m_face, part.text);
    selected.Draw(painter, m_face, part.selectionText);
}

void SequencePainter::CollectItem(ByteInk &ink, const SequenceEditing &editing, qsizetype at,
                                  QPointF corner) const
{
    const auto byte = uchar(editing.Bytes()[at]);
    const auto add = [&](uchar shown, qsizetype columns) {
        const QSizeF size(qreal(columns) * m_face.Advance(), m_rowHeight);
        ink.Add(m_face, shown, {corner, size}, m_baseline);
        corner.rx() += m_face.Advance();
    };
    if (editing.Form() == Representation::Ascii)
        return add(byte, qMax<qsizetype>(ByteLook::NameOf(byte).size(), 1));
    for (const char digit : SequenceText::Item(byte, editing.Form()).right(editing.DigitsOf(at)))
        add(uchar(digit), 1);
}
