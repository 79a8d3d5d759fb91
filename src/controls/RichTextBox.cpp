// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "controls/RichTextBox.h"

#include "controls/FixedPitchFont.h"
#include "controls/RichTextModel.h"
#include "controls/RichTextTyping.h"
#include "repr/CodePage1252.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyle>
#include <QStyleHints>
#include <QToolTip>

#include <cmath>

namespace
{

constexpr int Margin = 4;        ///< pixels between the viewport's edges and the text
constexpr int DragInterval = 40; ///< milliseconds between two scrolls past the edge

using Movement = RichTextCaret::Movement;

struct MovementKey {
    QKeySequence::StandardKey key;
    Movement movement;
    bool select;
};

constexpr MovementKey MovementKeys[] = {
    {QKeySequence::MoveToNextChar, Movement::NextCharacter, false},
    {QKeySequence::MoveToPreviousChar, Movement::PreviousCharacter, false},
    {QKeySequence::MoveToNextWord, Movement::NextWord, false},
    {QKeySequence::MoveToPreviousWord, Movement::PreviousWord, false},
    {QKeySequence::MoveToNextLine, Movement::NextRow, false},
    {QKeySequence::MoveToPreviousLine, Movement::PreviousRow, false},
    {QKeySequence::MoveToNextPage, Movement::NextPage, false},
    {QKeySequence::MoveToPreviousPage, Movement::PreviousPage, false},
    {QKeySequence::MoveToStartOfLine, Movement::RowStart, false},
    {QKeySequence::MoveToEndOfLine, Movement::RowEnd, false},
    {QKeySequence::MoveToStartOfDocument, Movement::Begin, false},
    {QKeySequence::MoveToEndOfDocument, Movement::End, false},
    {QKeySequence::SelectNextChar, Movement::NextCharacter, true},
    {QKeySequence::SelectPreviousChar, Movement::PreviousCharacter, true},
    {QKeySequence::SelectNextWord, Movement::NextWord, true},
    {QKeySequence::SelectPreviousWord, Movement::PreviousWord, true},
    {QKeySequence::SelectNextLine, Movement::NextRow, true},
    {QKeySequence::SelectPreviousLine, Movement::PreviousRow, true},
    {QKeySequence::SelectNextPage, Movement::NextPage, true},
    {QKeySequence::SelectPreviousPage, Movement::PreviousPage, true},
    {QKeySequence::SelectStartOfLine, Movement::RowStart, true},
    {QKeySequence::SelectEndOfLine, Movement::RowEnd, true},
    {QKeySequence::SelectStartOfDocument, Movement::Begin, true},
    {QKeySequence::SelectEndOfDocument, Movement::End, true},
};

struct CommandKey {
    QKeySequence::StandardKey key;
    void (RichTextBox::*command)();
    bool edits;
};

constexpr CommandKey CommandKeys[] = {
    {QKeySequence::Copy, &RichTextBox::Copy, false},
    {QKeySequence::SelectAll, &RichTextBox::SelectAll, false},
    {QKeySequence::Cut, &RichTextBox::Cut, true},
    {QKeySequence::Paste, &RichTextBox::Paste, true},
};

struct ErasingKey {
    QKeySequence::StandardKey key;
    Movement movement;
};

constexpr ErasingKey ErasingKeys[] = {
    {QKeySequence::Backspace, Movement::PreviousCharacter},
    {QKeySequence::Delete, Movement::NextCharacter},
    {QKeySequence::DeleteStartOfWord, Movement::PreviousWord},
    {QKeySequence::DeleteEndOfWord, Movement::NextWord},
};

/// The text that a key press types; empty for keys that type none. Ctrl and Alt together are the
/// AltGr key of some systems.
QString TypedText(const QKeyEvent &event)
{
    if (event.matches(QKeySequence::InsertParagraphSeparator) ||
        event.matches(QKeySequence::InsertLineSeparator))
        return QStringLiteral("\r\n");
    const auto modifiers = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    if (modifiers == Qt::ControlModifier || modifiers == Qt::AltModifier ||
        (event.modifiers() & Qt::MetaModifier))
        return {};
    const QString text = event.text();
    const bool types = !text.isEmpty() && text[0].unicode() >= 32 && text[0].unicode() != 127;
    return types ? text : QString();
}

} // namespace

RichTextBox::RichTextBox(RichTextModel &model, QWidget *parent)
    : QAbstractScrollArea(parent),
      m_model(model),
      m_layout(model),
      m_caret(model, m_layout),
      m_painter(FixedPitchFont::ViewFont())
{
    setFont(FixedPitchFont::ViewFont());
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_KeyCompression);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setCursor(Qt::IBeamCursor);
    m_dragging.setInterval(DragInterval);
    connect(&m_model, &RichTextModel::Changed, this, &RichTextBox::FollowModel);
    connect(&m_dragging, &QTimer::timeout, this, &RichTextBox::DragOn);
    connect(&m_blinking, &QTimer::timeout, this, &RichTextBox::ToggleCaret);
    setAttribute(Qt::WA_InputMethodEnabled, CanEdit());
}

// --- Following the model ------------------------------------------------------------------------

void RichTextBox::FollowModel()
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
    setAttribute(Qt::WA_InputMethodEnabled, CanEdit());
}

void RichTextBox::LayOut()
{
    m_layout.Update(FittingColumns());
    m_caret.SetPageRows(FullRows());
    const int last = int(qMax<qsizetype>(m_layout.RowCount() - FullRows(), 0));
    const int kept = int(m_layout.RowOf(qMax(m_top, m_model.Begin())));

    const QScopedValueRollback<bool> adjusting(m_adjusting, true);
    QScrollBar &bar = *verticalScrollBar();
    bar.setPageStep(int(FullRows()));
    bar.setRange(0, last);
    bar.setValue(m_followsEnd ? last : kept);
    m_followsEnd = bar.value() == last;
}

void RichTextBox::RepaintIfChanged()
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

const RichTextLayout &RichTextBox::Layout()
{
    LayOut();
    return m_layout;
}

/// The font's measures depend on the screen that the box stands on.
void RichTextBox::RenewPainter()
{
    m_pixelRatio = devicePixelRatioF();
    m_painter = RichTextPainter(font(), m_pixelRatio);
    if (isVisible())
        LayOut();
    viewport()->update();
}

void RichTextBox::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        RenewPainter();
}

void RichTextBox::showEvent(QShowEvent *event)
{
    QAbstractScrollArea::showEvent(event);
    if (m_pixelRatio != devicePixelRatioF())
        RenewPainter();
    FollowModel();
}

void RichTextBox::resizeEvent(QResizeEvent *)
{
    if (isVisible())
        LayOut();
}

// --- Scrolling ----------------------------------------------------------------------------------

qsizetype RichTextBox::FullRows() const
{
    const qreal height = viewport()->height() - 2 * Margin;
    return qMax<qsizetype>(qsizetype(height / m_painter.RowHeight()), 1);
}

int RichTextBox::FittingColumns() const
{
    return qMax(int((viewport()->width() - 2 * Margin) / m_painter.Advance()), 1);
}

void RichTextBox::scrollContentsBy(int, int)
{
    if (!m_adjusting) {
        m_top = m_layout.RowStart(verticalScrollBar()->value());
        m_followsEnd = verticalScrollBar()->value() == verticalScrollBar()->maximum();
    }
    viewport()->update();
}

/// Scrolls as the user would: the box then stays on the row.
void RichTextBox::ScrollToRow(qsizetype row)
{
    verticalScrollBar()->setValue(int(row));
}

void RichTextBox::ScrollToCaret()
{
    LayOut();
    ScrollInSight(m_caret.Row());
}

void RichTextBox::ScrollToPosition(qint64 position)
{
    LayOut();
    ScrollInSight(m_layout.RowOf(position));
}

void RichTextBox::ScrollInSight(qsizetype row)
{
    const qsizetype top = verticalScrollBar()->value();
    if (row < top)
        ScrollToRow(row);
    else if (row >= top + FullRows())
        ScrollToRow(row - FullRows() + 1);
}

void RichTextBox::ScrollToSelection()
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
        ScrollToRow(qMax<qsizetype>(first - FullRows() / 3, 0));
}

// --- Painting -----------------------------------------------------------------------------------

void RichTextBox::SetBackground(qint32 colour)
{
    QPalette colours;
    colours.setColor(QPalette::Base, RichTextPainter::ToColour(colour));
    viewport()->setPalette(colours);
}

QRectF RichTextBox::CellRect(qsizetype row, int column) const
{
    const qreal y = qreal(row - verticalScrollBar()->value()) * m_painter.RowHeight();
    return {Margin + column * m_painter.Advance(), Margin + y, m_painter.Advance(),
            m_painter.RowHeight()};
}

QRectF RichTextBox::CharacterRect(qint64 position)
{
    LayOut();
    position = qBound(m_model.Begin(), position, m_model.End());
    const qsizetype row = m_layout.RowOf(position);
    QRectF rect = CellRect(row, m_layout.ColumnOf(row, position));
    if (position < m_layout.RowTextEnd(row))
        rect.setRight(CellRect(row, m_layout.ColumnOf(row, position + 1)).left());
    return rect;
}

QRectF RichTextBox::CaretRect() const
{
    // Blanks may hang over the row's end; the caret stays in sight.
    const int column = qMin(m_caret.Column(), m_layout.Columns());
    QRectF rect = CellRect(m_caret.Row(), column);
    rect.setLeft(std::floor(rect.left()));
    rect.setWidth(style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, this));
    return rect;
}

void RichTextBox::paintEvent(QPaintEvent *)
{
    if (m_pixelRatio != devicePixelRatioF())
        RenewPainter();
    LayOut(); // a picture can be asked for while the box is hidden
    QPainter painter(viewport());
    painter.translate(Margin, Margin);
    const QPalette::ColorGroup group = hasFocus() ? QPalette::Active : QPalette::Inactive;
    m_painter.Paint(painter, m_layout,
                    {verticalScrollBar()->value(), FullRows() + 1,
                     palette().color(group, QPalette::Highlight),
                     palette().color(group, QPalette::HighlightedText)});
    painter.translate(-Margin, -Margin);
    if (m_caretVisible)
        PaintCaret(painter);
}

void RichTextBox::PaintCaret(QPainter &painter) const
{
    const QColor ground = viewport()->palette().color(QPalette::Base);
    painter.fillRect(CaretRect(), qGray(ground.rgb()) < 128 ? Qt::white : Qt::black);
}

void RichTextBox::RestartBlinking()
{
    m_caretVisible = hasFocus();
    const int flashTime = QApplication::cursorFlashTime();
    if (m_caretVisible && flashTime > 1)
        m_blinking.start(flashTime / 2);
    else
        m_blinking.stop();
}

void RichTextBox::ToggleCaret()
{
    m_caretVisible = !m_caretVisible;
    viewport()->update(CaretRect().toAlignedRect());
}

void RichTextBox::focusInEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusInEvent(event);
    RestartBlinking();
    viewport()->update();
}

void RichTextBox::focusOutEvent(QFocusEvent *event)
{
    QAbstractScrollArea::focusOutEvent(event);
    RestartBlinking();
    viewport()->update();
}

// --- Mouse --------------------------------------------------------------------------------------

qsizetype RichTextBox::RowAt(qreal y) const
{
    const auto row = qsizetype(std::floor((y - Margin) / m_painter.RowHeight()));
    return qBound<qsizetype>(0, row + verticalScrollBar()->value(), m_layout.RowCount() - 1);
}

double RichTextBox::ColumnAt(qreal x) const
{
    return (x - Margin) / m_painter.Advance();
}

qint64 RichTextBox::PositionAt(const QPointF &point)
{
    LayOut();
    return m_layout.PositionAt(RowAt(point.y()), ColumnAt(point.x()));
}

void RichTextBox::Press(const QMouseEvent &event, RichTextCaret::Unit unit)
{
    LayOut();
    m_mouse = event.position();
    m_caret.Press(RowAt(m_mouse.y()), ColumnAt(m_mouse.x()), unit,
                  event.modifiers().testFlag(Qt::ShiftModifier));
    RestartBlinking();
    viewport()->update();
}

void RichTextBox::mousePressEvent(QMouseEvent *event)
{
    const bool near =
        (event->position() - m_doubleClick).manhattanLength() < QApplication::startDragDistance();
    const bool third = near && m_sinceDoubleClick.isValid() &&
                       m_sinceDoubleClick.elapsed() < QApplication::doubleClickInterval();
    if (event->button() == Qt::LeftButton)
        Press(*event, third ? RichTextCaret::Unit::Line : RichTextCaret::Unit::Character);
    m_sinceDoubleClick.invalidate();
}

void RichTextBox::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    Press(*event, RichTextCaret::Unit::Word);
    m_doubleClick = event->position();
    m_sinceDoubleClick.start();
}

void RichTextBox::mouseMoveEvent(QMouseEvent *event)
{
    if (!event->buttons().testFlag(Qt::LeftButton))
        return;
    m_mouse = event->position();
    const bool past = m_mouse.y() < 0 || m_mouse.y() >= viewport()->height();
    if (!past)
        m_dragging.stop();
    else if (!m_dragging.isActive())
        m_dragging.start();
    m_caret.DragTo(RowAt(m_mouse.y()), ColumnAt(m_mouse.x()));
}

/// Scrolls on while the mouse is held past an edge, the faster the farther it is.
void RichTextBox::DragOn()
{
    const qreal past = m_mouse.y() < 0 ? m_mouse.y() : m_mouse.y() - viewport()->height();
    const int rows = int(past / m_painter.RowHeight());
    ScrollToRow(verticalScrollBar()->value() + (past < 0 ? rows - 1 : rows + 1));
    m_caret.DragTo(RowAt(m_mouse.y()), ColumnAt(m_mouse.x()));
}

void RichTextBox::mouseReleaseEvent(QMouseEvent *event)
{
    m_dragging.stop();
    if (event->button() == Qt::LeftButton)
        PublishSelection();
    QClipboard &clipboard = *QApplication::clipboard();
    if (event->button() == Qt::MiddleButton && CanEdit() && clipboard.supportsSelection()) {
        m_caret.Press(RowAt(event->position().y()), ColumnAt(event->position().x()),
                      RichTextCaret::Unit::Character, false);
        Insert(clipboard.text(QClipboard::Selection));
    }
    ReleaseCaret();
}

void RichTextBox::ReleaseCaret()
{
    Q_EMIT CaretReleased(m_model.SelectionStart() - m_model.Begin());
}

/// What is selected can be pasted with the middle button, where the system knows that.
void RichTextBox::PublishSelection()
{
    QClipboard &clipboard = *QApplication::clipboard();
    if (clipboard.supportsSelection() && m_model.HasSelection())
        clipboard.setText(CodePage1252::ToUnicode(m_model.SelectedText()), QClipboard::Selection);
}

void RichTextBox::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint place =
        byKey ? viewport()->mapToGlobal(CaretRect().bottomLeft().toPoint()) : event->globalPos();
    // Not executed, so that the text goes on while the menu is open.
    QMenu *menu = MakeContextMenu().release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(place);
}

std::unique_ptr<QMenu> RichTextBox::MakeContextMenu()
{
    auto menu = std::make_unique<QMenu>(this);
    const bool selected = m_model.HasSelection();
    const bool pastes = !QApplication::clipboard()->text().isEmpty();
    menu->addAction(tr("Cu&t"), this, &RichTextBox::Cut)->setEnabled(selected && CanEdit());
    menu->addAction(tr("&Copy"), this, &RichTextBox::Copy)->setEnabled(selected);
    menu->addAction(tr("&Paste"), this, &RichTextBox::Paste)->setEnabled(pastes && CanEdit());
    menu->addAction(tr("&Delete"), this, &RichTextBox::Delete)->setEnabled(selected && CanEdit());
    menu->addSeparator();
    menu->addAction(tr("Select &All"), this, &RichTextBox::SelectAll)
        ->setEnabled(m_model.Length() > 0);
    return menu;
}

// --- Keyboard -----------------------------------------------------------------------------------

bool RichTextBox::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // A key that means something here is not a shortcut of the window.
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (HandleKey(key, false)) {
            event->accept();
            return true;
        }
    }
    return QAbstractScrollArea::event(event);
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    event->setAccepted(HandleKey(*event, true));
}

void RichTextBox::keyReleaseEvent(QKeyEvent *event)
{
    QAbstractScrollArea::keyReleaseEvent(event);
    ReleaseCaret();
}

bool RichTextBox::HandleKey(const QKeyEvent &event, bool inEarnest)
{
    return HandleMovementKey(event, inEarnest) || HandleCommandKey(event, inEarnest) ||
           (CanEdit() && HandleEditingKey(event, inEarnest));
}

bool RichTextBox::HandleMovementKey(const QKeyEvent &event, bool inEarnest)
{
    for (const MovementKey &entry : MovementKeys) {
        if (!event.matches(entry.key))
            continue;
        if (inEarnest)
            MoveCaret(entry.movement, entry.select);
        return true;
    }
    return false;
}

bool RichTextBox::HandleCommandKey(const QKeyEvent &event, bool inEarnest)
{
    for (const CommandKey &entry : CommandKeys) {
        if (!event.matches(entry.key) || (entry.edits && !CanEdit()))
            continue;
        if (inEarnest)
            (this->*entry.command)();
        return true;
    }
    return false;
}

bool RichTextBox::HandleEditingKey(const QKeyEvent &event, bool inEarnest)
{
    const bool shiftBackspace =
        event.key() == Qt::Key_Backspace && event.modifiers() == Qt::ShiftModifier;
    for (const ErasingKey &entry : ErasingKeys) {
        if (!event.matches(entry.key) && !(entry.key == QKeySequence::Backspace && shiftBackspace))
            continue;
        if (inEarnest)
            EraseTowards(entry.movement);
        return true;
    }
    const QString text = TypedText(event);
    if (text.isEmpty())
        return false;
    if (inEarnest)
        Insert(text);
    return true;
}

void RichTextBox::MoveCaret(Movement movement, bool select)
{
    LayOut();
    m_caret.Move(movement, select);
    ScrollToCaret();
    RestartBlinking();
    viewport()->update();
    if (select)
        PublishSelection();
}

/// Erases the selection, or what the movement passes.
void RichTextBox::EraseTowards(Movement movement)
{
    LayOut();
    if (!m_model.HasSelection())
        m_caret.Move(movement, true);
    RichTextTyping::RemoveSelection(m_model);
    ScrollToCaret();
}

void RichTextBox::Insert(const QString &text)
{
    if (text.isEmpty() || !CanEdit())
        return;
    const QString refusal = RichTextTyping::Insert(m_model, text, m_typingStyle);
    ScrollToCaret();
    if (!refusal.isEmpty())
        QToolTip::showText(viewport()->mapToGlobal(CaretRect().bottomLeft().toPoint()), refusal,
                           this);
}

bool RichTextBox::CanEdit() const
{
    return !m_model.ReadOnly();
}

void RichTextBox::Copy()
{
    if (m_model.HasSelection())
        QApplication::clipboard()->setText(CodePage1252::ToUnicode(m_model.SelectedText()));
}

void RichTextBox::Cut()
{
    Copy();
    Delete();
}

void RichTextBox::Paste()
{
    Insert(QApplication::clipboard()->text());
}

void RichTextBox::Delete()
{
    if (!CanEdit() || !m_model.HasSelection())
        return;
    RichTextTyping::RemoveSelection(m_model);
    ScrollToCaret();
}

void RichTextBox::SelectAll()
{
    m_model.Select(m_model.Begin(), m_model.End());
    PublishSelection();
}

// --- Input methods ------------------------------------------------------------------------------

void RichTextBox::inputMethodEvent(QInputMethodEvent *event)
{
    Insert(event->commitString());
    event->accept();
}

QVariant RichTextBox::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (!isVisible()) // not laid out
        return QAbstractScrollArea::inputMethodQuery(query);
    const qint64 rowStart = m_layout.RowStart(m_caret.Row());
    switch (query) {
    case Qt::ImCursorRectangle:
        return CaretRect().translated(viewport()->pos());
    case Qt::ImCursorPosition:
        return int(m_model.Caret() - rowStart);
    case Qt::ImSurroundingText:
        return CodePage1252::ToUnicode(m_model.Bytes().sliced(
            rowStart - m_model.Begin(), m_layout.RowTextEnd(m_caret.Row()) - rowStart));
    case Qt::ImCurrentSelection:
        return CodePage1252::ToUnicode(m_model.SelectedText());
    default:
        return QAbstractScrollArea::inputMethodQuery(query);
    }
}
