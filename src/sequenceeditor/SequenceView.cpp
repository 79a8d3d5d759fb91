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

namespace
{

constexpr int Margin = 4; ///< pixels between the viewport's edges and the items

} // namespace

SequenceView::SequenceView(QWidget *parent)
    : CaretScrollArea(parent),
      m_painter(FixedPitchFont::ViewFont(), 1),
      lblPosition(new QLabel(this))
{
    lblPosition->setObjectName(QStringLiteral("lblPosition"));
    lblPosition->setContentsMargins(Margin, 0, Margin, 0);
    lblPosition->setFont(QApplication::font());
    lblPosition->setTextFormat(Qt::PlainText);
    setFont(FixedPitchFont::ViewFont());
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    RenewPainter();
}

// --- Places -------------------------------------------------------------------------------------

const SequenceLayout &SequenceView::Layout() const
{
    const int columns = int((viewport()->width() - 2 * Margin) / m_painter.Advance());
    const LaidOut wanted{m_editing.Document().Revision(), columns, m_editing.Form()};
    if (wanted != m_laidOut) {
        m_layout = SequenceLayout(m_editing.Form(), columns, m_editing.Bytes());
        m_laidOut = wanted;
    }
    return m_layout;
}

qsizetype SequenceView::FullRows() const
{
    const qreal height = viewport()->height() - 2 * Margin;
    return qMax<qsizetype>(qsizetype(height / m_painter.RowHeight()), 1);
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
    const qsizetype row = layout.RowOf(byte) - verticalScrollBar()->value();
    return {Margin + layout.ColumnOf({byte, 0}) * m_painter.Advance(),
            Margin + qreal(row) * m_painter.RowHeight(), layout.WidthOf(byte) * m_painter.Advance(),
            m_painter.RowHeight()};
}

QRectF SequenceView::CaretRect() const
{
    const bool block = m_editing.Overtypes() && m_editing.Caret().byte < m_editing.Length();
    const qreal thin = style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this);
    const qreal digit =
        ItemRect(m_editing.Caret().byte).width() / SequenceText::ItemWidth(m_editing.Form());
    const qsizetype row = CaretRow() - verticalScrollBar()->value();
    return {std::floor(Margin + CaretColumn() * m_painter.Advance()),
            Margin + qreal(row) * m_painter.RowHeight(), block ? digit : thin,
            m_painter.RowHeight()};
}

SequenceView::Cell SequenceView::CellAt(const QPointF &point) const
{
    const auto row = qsizetype(std::floor((point.y() - Margin) / m_painter.RowHeight()));
    return {qBound<qsizetype>(0, row + verticalScrollBar()->value(), Layout().RowCount() - 1),
            (point.x() - Margin) / m_painter.Advance()};
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
    QScrollBar &bar = *verticalScrollBar();
    const qsizetype row = Layout().RowOf(byte);
    if (row < bar.value())
        bar.setValue(int(row));
    else if (row >= bar.value() + FullRows())
        bar.setValue(int(row - FullRows() + 1));
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
    const qsizetype rows = Layout().RowCount();
    QScrollBar &bar = *verticalScrollBar();
    bar.setPageStep(int(FullRows()));
    bar.setRange(0, int(qMax<qsizetype>(rows - FullRows(), 0)));
}

/// The font's measures depend on the screen that the box stands on.
void SequenceView::RenewPainter()
{
    m_pixelRatio = devicePixelRatioF();
    m_painter = SequencePainter(font(), m_pixelRatio);
    lblPosition->setText(PositionText());
    setViewportMargins(0, 0, 0, LineHeight());
    LayOut();
    viewport()->update();
}

void SequenceView::changeEvent(QEvent *event)
{
    CaretScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        RenewPainter();
    else if (event->type() == QEvent::EnabledChange)
        viewport()->update();
}

void SequenceView::showEvent(QShowEvent *event)
{
    CaretScrollArea::showEvent(event);
    if (m_pixelRatio != devicePixelRatioF())
        RenewPainter();
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
