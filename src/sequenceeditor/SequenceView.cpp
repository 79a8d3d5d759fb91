// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceView.h"

#include "FixedPitchFont.h"
#include "SequenceText.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>

#include <cmath>

SequenceView::SequenceView(QWidget *parent)
    : TextControl(parent), m_painter(FixedPitchFont::ViewFont(), 1), lblPosition(new QLabel(this))
{
    lblPosition->setObjectName(QStringLiteral("lblPosition"));
    lblPosition->setContentsMargins(Margin, 0, Margin, 0);
    lblPosition->setFont(QApplication::font());
    lblPosition->setTextFormat(Qt::PlainText);
    setFont(FixedPitchFont::ViewFont());
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    SequenceView::RenewPainter();
}

// --- Places -------------------------------------------------------------------------------------

const SequenceLayout &SequenceView::Layout() const
{
    const int columns = FittingColumns();
    const LaidOut wanted{m_editing.Document().Revision(), columns, m_editing.Form()};
    if (wanted != m_laidOut) {
        m_layout = SequenceLayout(m_editing.Form(), columns, m_editing.Bytes());
        m_laidOut = wanted;
    }
    return m_layout;
}

qsizetype SequenceView::CaretRow() const
{
    return Layout().RowOf(m_editing.Caret().byte) - (m_caretAtRowEnd ? 1 : 0);
}

int SequenceView::CaretColumn() const
{
    return m_caretAtRowEnd ? Layout().RowEndColumn(CaretRow())
                           : Layout().ColumnOf(m_editing.Caret());
}

QRectF SequenceView::ItemRect(qsizetype byte) const
{
    const SequenceLayout &layout = Layout();
    return CellRect(layout.RowOf(byte), layout.ColumnOf({byte, 0}), layout.WidthOf(byte));
}

QRectF SequenceView::CaretRect() const
{
    const bool block = m_editing.Overtypes() && m_editing.Caret().byte < m_editing.Length();
    const qreal thin = style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this);
    const qreal digit =
        ItemRect(m_editing.Caret().byte).width() / SequenceText::ItemWidth(m_editing.Form());
    QRectF rect = CellRect(CaretRow(), CaretColumn());
    rect.setLeft(std::floor(rect.left()));
    rect.setWidth(block ? digit : thin);
    return rect;
}

// --- Following ----------------------------------------------------------------------------------

void SequenceView::Follow(RowEnd rowEnd)
{
    const SequencePlace caret = m_editing.Caret();
    m_caretAtRowEnd = rowEnd == RowEnd::Yes && caret.digit == 0 && caret.byte > 0 &&
                      Layout().RowStart(Layout().RowOf(caret.byte)) == caret.byte;
    LayOut();
    ScrollToByte(caret.byte - (m_caretAtRowEnd ? 1 : 0));
    lblPosition->setText(PositionText());
    RestartBlinking();
    viewport()->update();
}

void SequenceView::ScrollToByte(qsizetype byte)
{
    ScrollInSight(Layout().RowOf(byte));
}

QString SequenceView::PositionText() const
{
    const qsizetype length = m_editing.Length();
    const QString bytes = length == 1 ? tr("1 byte") : tr("%1 bytes").arg(length);
    const qsizetype from = m_editing.SelectionStart() + 1;
    const qsizetype to = m_editing.SelectionEnd();
    QString place = tr("at byte %1").arg(from);
    if (m_editing.HasSelection())
        place = from == to ? tr("byte %1 selected").arg(from)
                           : tr("bytes %1 to %2 selected").arg(from).arg(to);
    else if (from > length)
        place = tr("at the end");
    QString text = length == 0 ? bytes : tr("%1, %2").arg(bytes, place);
    return m_editing.Overtypes() ? tr("%1, overtyping").arg(text) : text;
}

int SequenceView::LineHeight() const
{
    return lblPosition->sizeHint().height() + 2;
}

void SequenceView::LayOut()
{
    SetRowCount(Layout().RowCount());
}

void SequenceView::RenewPainter()
{
    m_painter = SequencePainter(font(), devicePixelRatioF());
    SetMeasures(m_painter.Advance(), m_painter.RowHeight());
    lblPosition->setText(PositionText());
    setViewportMargins(0, 0, 0, LineHeight());
    LayOut();
    viewport()->update();
}

void SequenceView::changeEvent(QEvent *event)
{
    TextControl::changeEvent(event);
    if (event->type() == QEvent::EnabledChange)
        viewport()->update();
}

void SequenceView::resizeEvent(QResizeEvent *)
{
    const QRect area = viewport()->geometry();
    lblPosition->setGeometry(area.left(), area.bottom() + 1, area.width(), LineHeight());
    m_caretAtRowEnd = false;
    LayOut();
}

void SequenceView::scrollContentsBy(int, int)
{
    viewport()->update();
}

QSize SequenceView::SizeOf(int columns, int rows) const
{
    const int frame = 2 * frameWidth();
    return {int(std::ceil(columns * m_painter.Advance())) + 2 * Margin + frame +
                verticalScrollBar()->sizeHint().width(),
            int(std::ceil(rows * m_painter.RowHeight())) + 2 * Margin + frame + LineHeight()};
}

QSize SequenceView::sizeHint() const
{
    return SizeOf(48, 5);
}

QSize SequenceView::minimumSizeHint() const
{
    return SizeOf(20, 2);
}

// --- Painting -----------------------------------------------------------------------------------

void SequenceView::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    const bool active = hasFocus() || !isEnabled();
    const auto group = active ? palette().currentColorGroup() : QPalette::Inactive;
    painter.translate(Margin, Margin);
    m_painter.Paint(painter, m_editing, Layout(),
                    {verticalScrollBar()->value(), FullRows() + 1, palette().color(QPalette::Text),
                     palette().color(group, QPalette::Highlight),
                     palette().color(group, QPalette::HighlightedText)});
    painter.translate(-Margin, -Margin);
    if (CaretVisible())
        PaintCaret(painter);
}

void SequenceView::PaintCaret(QPainter &painter) const
{
    QColor colour = palette().color(QPalette::Text);
    if (CaretRect().width() >= m_painter.Advance())
        colour.setAlphaF(0.4F);
    painter.fillRect(CaretRect(), colour);
}
