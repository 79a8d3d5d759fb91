// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextView.h"

#include "CodePage1252.h"
#include "FixedPitchFont.h"
#include "RichTextModel.h"

#include <QAccessible>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

/// Assistive programs are told of news at most this often, in milliseconds, and of this much text.
constexpr int AnnouncingPause = 200;
constexpr qint64 MostAnnounced = 4096;

} // namespace

RichTextView::RichTextView(RichTextModel &model, QWidget *parent)
    : TextControl(parent),
      m_model(model),
      m_layout(model),
      m_caret(model, m_layout),
      m_painter(FixedPitchFont::ViewFont())
{
    setFont(FixedPitchFont::ViewFont());
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    SetMeasures(m_painter.Advance(), m_painter.RowHeight());
    m_announcing.setSingleShot(true);
    connect(&m_announcing, &QTimer::timeout, this, &RichTextView::Announce);
    connect(&m_model, &RichTextModel::Changed, this, &RichTextView::FollowModel);
}

void RichTextView::FollowModel()
{
    if (!isVisible())
        return;
    if (!m_model.HasSelection() && RichTextSteps::IsInsideCrLf(m_model, m_model.Caret())) {
        // The CR behind which the caret stood has got its LF.
        m_model.Select(m_model.Caret() + 1, m_model.Caret() + 1);
        return;
    }
    LayOut();
    RepaintIfChanged();
    Announce();
}

void RichTextView::LayOut()
{
    m_layout.Update(FittingColumns());
    m_caret.SetPageRows(FullRows());
    const int last = int(qMax<qsizetype>(m_layout.RowCount() - FullRows(), 0));
    const int kept = int(m_layout.RowOf(qMax(m_top, m_model.Begin())));

    const QScopedValueRollback<bool> adjusting(m_adjusting, true);
    QScrollBar &bar = *verticalScrollBar();
    SetRowCount(m_layout.RowCount());
    bar.setValue(m_followsEnd ? last : kept);
    m_followsEnd = bar.value() == last;
    PlaceCaretRect();
}

void RichTextView::RepaintIfChanged()
{
    const qsizetype top = verticalScrollBar()->value();
    const qsizetype bottom = qMin(top + FullRows(), m_layout.RowCount() - 1);
    const Shown shown = {m_model.EditRevision(), m_layout.RowStart(top), m_layout.RowEnd(bottom),
                         m_model.Anchor(),       m_model.Caret(),        m_layout.Columns()};
    if (shown == m_shown)
        return;
    if (shown.caret != m_shown.caret)
        RestartBlinking();
    m_shown = shown;
    viewport()->update();
}

/// Tells assistive programs what has come and where the caret is: at once in a quiet view. Of fast
/// traffic, which nobody could listen to, they get the end of what came in a while.
void RichTextView::Announce()
{
    if (m_announcing.isActive() || !isVisible())
        return;
    const qint64 begin = m_model.Begin();
    const qint64 from = std::max(
        {std::exchange(m_announcedEnd, m_model.End()), begin, m_model.End() - MostAnnounced});
    const qint64 caret = std::exchange(m_announcedCaret, m_model.Caret());
    if (!QAccessible::isActive() || (from == m_model.End() && caret == m_model.Caret()))
        return;
    m_announcing.start(AnnouncingPause);
    if (from < m_model.End()) {
        QAccessibleTextInsertEvent inserted(
            this, int(from - begin), CodePage1252::ToUnicode(m_model.Bytes().sliced(from - begin)));
        QAccessible::updateAccessibility(&inserted);
    }
    if (caret != m_model.Caret()) {
        QAccessibleTextSelectionEvent moved(this, int(m_model.SelectionStart() - begin),
                                            int(m_model.SelectionEnd() - begin));
        moved.setCursorPosition(int(m_model.Caret() - begin));
        QAccessible::updateAccessibility(&moved);
    }
}

const RichTextLayout &RichTextView::Layout()
{
    LayOut();
    return m_layout;
}

void RichTextView::RenewPainter()
{
    m_painter = RichTextPainter(font(), devicePixelRatioF(),
                                m_showsControls ? ByteFace::Controls::LaidOutPictures
                                                : ByteFace::Controls::LaidOutBoxes);
    SetMeasures(m_painter.Advance(), m_painter.RowHeight());
    if (isVisible())
        LayOut();
    viewport()->update();
}

void RichTextView::showEvent(QShowEvent *event)
{
    TextControl::showEvent(event);
    FollowModel();
}

void RichTextView::resizeEvent(QResizeEvent *)
{
    if (isVisible())
        LayOut();
}

void RichTextView::scrollContentsBy(int, int)
{
    if (!m_adjusting) {
        m_top = m_layout.RowStart(verticalScrollBar()->value());
        m_followsEnd = verticalScrollBar()->value() == verticalScrollBar()->maximum();
        LayOut();
    }
    viewport()->update();
}

RichTextCaret &RichTextView::ReadyCaret()
{
    LayOut();
    return m_caret;
}

void RichTextView::ShowCaret()
{
    LayOut();
    ScrollInSight(m_caret.Row());
    RestartBlinking();
    viewport()->update();
}

void RichTextView::ScrollToPosition(qint64 position)
{
    LayOut();
    ScrollInSight(m_layout.RowOf(position));
}

void RichTextView::ScrollToSelection()
{
    LayOut();
    const qsizetype first = m_layout.RowOf(m_model.SelectionStart());
    const qsizetype last = m_layout.RowOf(m_model.SelectionEnd());
    const qsizetype top = verticalScrollBar()->value();
    const qsizetype away = qMin<qsizetype>(2, FullRows() / 4);
    const bool inSight = first >= top && last < top + FullRows();
    const bool awayFromTop = first >= top + away || top == 0;
    const bool awayFromBottom =
        last < top + FullRows() - away || top == verticalScrollBar()->maximum();
    if (!inSight || !awayFromTop || !awayFromBottom)
        verticalScrollBar()->setValue(int(qMax<qsizetype>(first - FullRows() / 3, 0)));
}

void RichTextView::SetColours(const DisplaySettings &stored)
{
    m_stored = stored;
    FollowPalette();
}

void RichTextView::FollowPalette()
{
    if (!m_stored)
        return;
    m_colours = ViewColours(*m_stored, palette());
    QPalette ground;
    ground.setColor(QPalette::Base, m_colours.Ground());
    viewport()->setPalette(ground);
    viewport()->update();
}

void RichTextView::changeEvent(QEvent *event)
{
    TextControl::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        FollowPalette();
}

void RichTextView::SetShowsControls(bool shows)
{
    m_showsControls = shows;
    RenewPainter();
}

/// Pictures behind a line may stand in the margin.
qreal RichTextView::PaintedWidth() const
{
    return viewport()->width() - Margin;
}

QRectF RichTextView::CharacterRect(qint64 position)
{
    LayOut();
    position = qBound(m_model.Begin(), position, m_model.End());
    const qsizetype row = m_layout.RowOf(position);
    QRectF rect = CellRect(row, m_layout.ColumnOf(row, position));
    const QRectF picture = m_painter.BreakRect(m_layout, position, PaintedWidth());
    if (!picture.isEmpty())
        return picture.translated(Margin, rect.top());
    if (position < m_layout.RowTextEnd(row))
        rect.setRight(CellRect(row, m_layout.ColumnOf(row, position + 1)).left());
    return rect;
}

QRect RichTextView::SelectionRect()
{
    const qint64 last = qMax(m_model.SelectionStart(), m_model.SelectionEnd() - 1);
    const QRectF from = CharacterRect(m_model.SelectionStart());
    const QRectF to = CharacterRect(last);
    QRectF rect = from | to;
    if (from.top() < to.top()) {
        rect.setLeft(0);
        rect.setRight(viewport()->width());
    }
    return rect.toAlignedRect() & viewport()->rect();
}

void RichTextView::PlaceCaretRect()
{
    // Blanks may hang over the row's end; the caret stays in sight.
    const int column = qMin(m_caret.Column(), m_layout.Columns());
    m_caretRect = CellRect(m_caret.Row(), column);
    m_caretRect.setLeft(std::floor(m_caretRect.left()));
    m_caretRect.setWidth(style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this));
}

void RichTextView::paintEvent(QPaintEvent *)
{
    FollowScreen();
    LayOut(); // a picture can be asked for while the box is hidden
    QPainter painter(viewport());
    painter.translate(Margin, Margin);
    // What a search found is selected while its dialog has the focus, and is to be seen as well.
    m_painter.Paint(painter, m_layout,
                    {verticalScrollBar()->value(), FullRows() + 1,
                     palette().color(QPalette::Active, QPalette::Highlight),
                     palette().color(QPalette::Active, QPalette::HighlightedText), false, m_colours,
                     PaintedWidth()});
    painter.translate(-Margin, -Margin);
    if (CaretVisible())
        PaintCaret(painter);
}

void RichTextView::PaintCaret(QPainter &painter) const
{
    const QColor ground = viewport()->palette().color(QPalette::Base);
    painter.fillRect(CaretRect(), qGray(ground.rgb()) < 128 ? Qt::white : Qt::black);
}

RichTextView::Cell RichTextView::CellAt(const QPointF &point)
{
    LayOut();
    return TextControl::CellAt(point, m_layout.RowCount());
}

qint64 RichTextView::PositionAt(const QPointF &point)
{
    const Cell cell = CellAt(point);
    return m_layout.PositionAt(cell.row, cell.column);
}
