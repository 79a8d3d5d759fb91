// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SQEditSequence.h"

#include "CodePage1252.h"
#include "SequenceAccessible.h"
#include "SequenceText.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>
#include <QTextDocument>
#include <QToolTip>

#include <utility>

namespace
{

constexpr int DragInterval = 40; ///< milliseconds between two scrolls past the edge

/// The bytes themselves on the clipboard, beside their text.
constexpr char BytesFormat[] = "application/x-serimonde-sequence";

/// A tool tip would take some plain texts for markup.
void ShowTip(const QPoint &at, const QString &text, QWidget *widget)
{
    QToolTip::showText(at, Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text, widget);
}

} // namespace

SQEditSequence::SQEditSequence(QWidget *parent) : SequenceView(parent)
{
    QAccessible::installFactory(SequenceAccessible::Create);
    setAccessibleName(tr("Sequence"));
    setFocusPolicy(Qt::StrongFocus);
    setInputMethodHints(Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
    m_dragging.setInterval(DragInterval);
    connect(&m_dragging, &QTimer::timeout, this, &SQEditSequence::DragOn);
    FollowEditability();
}

void SQEditSequence::SetSequence(const QByteArray &sequence)
{
    Edit().SetBytes(sequence);
    Show({}, RowEnd::No);
}

QByteArray SQEditSequence::Text(Representation form) const
{
    return SequenceText::Of(Sequence(), form);
}

int SQEditSequence::EditMode() const
{
    return RowOf(Editing().Form()).editMode;
}

void SQEditSequence::SetEditMode(int mode)
{
    const bool known = mode >= 0 && mode < int(RepresentationsByEditMode.size());
    Edit().SetForm(known ? RepresentationsByEditMode[size_t(mode)] : Representation::Ascii);
    Announce();
}

void SQEditSequence::SetReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    FollowEditability();
}

void SQEditSequence::FollowEditability()
{
    setAttribute(Qt::WA_InputMethodEnabled, CanEdit());
    viewport()->setBackgroundRole(CanEdit() ? QPalette::Base : QPalette::Window);
    viewport()->setCursor(isEnabled() ? Qt::IBeamCursor : Qt::ArrowCursor);
    viewport()->update();
}

void SQEditSequence::changeEvent(QEvent *event)
{
    SequenceView::changeEvent(event);
    if (event->type() == QEvent::EnabledChange)
        FollowEditability();
}

// --- Telling ------------------------------------------------------------------------------------

void SQEditSequence::Announce(const QString &refusal, RowEnd rowEnd)
{
    if (Show(refusal, rowEnd))
        Q_EMIT Changed();
}

bool SQEditSequence::Show(const QString &refusal, RowEnd rowEnd)
{
    m_wantedColumn = -1;
    Follow(rowEnd);
    ShowRefusal(refusal);
    const quint64 revision = Editing().Document().Revision();
    const bool changed = std::exchange(m_announcedRevision, revision) != revision;
    TellAssistivePrograms(changed);
    return changed;
}

void SQEditSequence::TellAssistivePrograms(bool changed)
{
    if (!QAccessible::isActive())
        return;
    const int pitch = SequenceText::ItemPitch(Editing().Form());
    if (changed) {
        const SequenceDocument::Change &change = Editing().Document().LastChange();
        QAccessibleTextUpdateEvent updated(this, int(change.from) * pitch,
                                           ShownText(change.removed), ShownText(change.inserted));
        QAccessible::updateAccessibility(&updated);
    }
    QAccessibleTextSelectionEvent moved(this, int(Editing().SelectionStart()) * pitch,
                                        int(Editing().SelectionEnd()) * pitch);
    moved.setCursorPosition(int(Editing().Caret().byte) * pitch + Editing().Caret().digit);
    QAccessible::updateAccessibility(&moved);
}

void SQEditSequence::ShowRefusal(const QString &refusal)
{
    if (!refusal.isEmpty())
        ShowTip(viewport()->mapToGlobal(CaretRect().bottomLeft().toPoint()), refusal, this);
    else if (m_refusalShown)
        QToolTip::hideText();
    m_refusalShown = !refusal.isEmpty();
}

QString SQEditSequence::ShownText(const QByteArray &bytes) const
{
    return CodePage1252::ToUnicode(SequenceText::Of(bytes, Editing().Form()));
}

QString SQEditSequence::Description(qsizetype byte) const
{
    const auto value = uchar(Sequence()[byte]);
    const QByteArrayView name = SequenceText::ControlName(value);
    const QString character = name.isEmpty()
                                  ? u'"' + QString(QChar(CodePage1252::ToUnicode(value))) + u'"'
                                  : QString::fromLatin1(name);
    QString text = tr("Byte %1: %2").arg(QString::number(byte + 1), character);
    for (const RepresentationRow &row : RepresentationRows) {
        if (row.representation != Representation::Ascii)
            text += QStringLiteral(", %1 %2").arg(
                QString::fromLatin1(row.caption),
                QString::fromLatin1(SequenceText::Item(value, row.representation)));
    }
    return text;
}

bool SQEditSequence::viewportEvent(QEvent *event)
{
    if (event->type() != QEvent::ToolTip || !toolTip().isEmpty())
        return SequenceView::viewportEvent(event);
    const auto &help = *static_cast<QHelpEvent *>(event);
    const qsizetype byte = ByteAt(help.pos());
    if (byte >= 0)
        ShowTip(help.globalPos(), Description(byte), viewport());
    else
        QToolTip::hideText();
    return true;
}

qsizetype SQEditSequence::ByteAt(const QPointF &point) const
{
    const Cell cell = CellAt(point);
    const qsizetype byte = Layout().ByteUnder(cell.row, cell.column);
    return byte < Editing().Length() && ItemRect(byte).contains(point) ? byte : -1;
}

// --- Mouse --------------------------------------------------------------------------------------

void SQEditSequence::PlaceInRow(Cell cell, bool select)
{
    const SequenceLayout &layout = Layout();
    if (select)
        Edit().SelectTo(layout.BorderAt(cell.row, cell.column));
    else
        Edit().PlaceCaret(layout.PlaceAt(cell.row, cell.column));
    const bool behind = layout.RowOf(Editing().Caret().byte) > cell.row;
    Announce({}, behind ? RowEnd::Yes : RowEnd::No);
}

void SQEditSequence::Press(const QMouseEvent &event)
{
    m_mouse = event.position();
    PlaceInRow(CellAt(m_mouse), event.modifiers().testFlag(Qt::ShiftModifier));
    const Cell cell = CellAt(m_mouse);
    m_pressedFrom = Editing().HasSelection()
                        ? Editing().Anchor()
                        : qMin(Layout().BorderAt(cell.row, cell.column), Editing().Length());
    m_pressedTo = m_pressedFrom;
}

void SQEditSequence::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    const bool third =
        m_sinceDoubleClick.isValid() &&
        m_sinceDoubleClick.elapsed() < QApplication::doubleClickInterval() &&
        (event->position() - m_mouse).manhattanLength() < QApplication::startDragDistance();
    m_sinceDoubleClick.invalidate();
    Press(*event);
    if (!third)
        return;
    SelectAll();
    m_pressedFrom = 0;
    m_pressedTo = Editing().Length();
}

void SQEditSequence::mouseDoubleClickEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_mouse = event->position();
    const Cell cell = CellAt(m_mouse);
    Edit().SelectUnitAt(Layout().ByteUnder(cell.row, cell.column));
    m_pressedFrom = Editing().SelectionStart();
    m_pressedTo = Editing().SelectionEnd();
    Announce();
    m_sinceDoubleClick.start();
}

void SQEditSequence::mouseMoveEvent(QMouseEvent *event)
{
    if (!event->buttons().testFlag(Qt::LeftButton))
        return;
    m_mouse = event->position();
    const bool past = m_mouse.y() < 0 || m_mouse.y() >= viewport()->height();
    if (!past)
        m_dragging.stop();
    else if (!m_dragging.isActive())
        m_dragging.start();
    Drag();
}

void SQEditSequence::Drag()
{
    const Cell cell = CellAt(m_mouse);
    const qsizetype border = Layout().BorderAt(cell.row, cell.column);
    const bool inside = border >= m_pressedFrom && border <= m_pressedTo;
    if (inside && m_pressedFrom == m_pressedTo && !Editing().HasSelection())
        return; // the caret stays on the digit that was clicked
    if (border < m_pressedFrom)
        Edit().Select(m_pressedTo, border);
    else
        Edit().Select(m_pressedFrom, qMax(border, m_pressedTo));
    const bool behind = Layout().RowOf(Editing().Caret().byte) > cell.row;
    Announce({}, behind ? RowEnd::Yes : RowEnd::No);
}

/// Scrolls on while the mouse is held past an edge, the faster the farther it is.
void SQEditSequence::DragOn()
{
    const qreal past = m_mouse.y() < 0 ? m_mouse.y() : m_mouse.y() - viewport()->height();
    const int rows = int(past / CaretRect().height());
    QScrollBar &bar = *verticalScrollBar();
    bar.setValue(bar.value() + (past < 0 ? rows - 1 : rows + 1));
    Drag();
}

void SQEditSequence::mouseReleaseEvent(QMouseEvent *event)
{
    m_dragging.stop();
    if (event->button() == Qt::LeftButton)
        PublishSelection();
    const QClipboard &clipboard = *QApplication::clipboard();
    if (event->button() == Qt::MiddleButton && CanEdit() && clipboard.supportsSelection()) {
        Press(*event);
        Announce(Edit().Paste(clipboard.text(QClipboard::Selection)));
    }
}

/// What is selected can be pasted with the middle button, where the system knows that.
void SQEditSequence::PublishSelection()
{
    QClipboard &clipboard = *QApplication::clipboard();
    if (clipboard.supportsSelection() && Editing().HasSelection())
        clipboard.setText(ShownText(Editing().SelectedBytes()), QClipboard::Selection);
}

void SQEditSequence::contextMenuEvent(QContextMenuEvent *event)
{
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const QPoint place =
        byKey ? viewport()->mapToGlobal(CaretRect().bottomLeft().toPoint()) : event->globalPos();
    QMenu *menu = MakeContextMenu().release();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(place);
}

std::unique_ptr<QMenu> SQEditSequence::MakeContextMenu()
{
    auto menu = std::make_unique<QMenu>(this);
    const auto add = [&](const QString &text, void (SQEditSequence::*command)(), bool enabled) {
        menu->addAction(text, this, command)->setEnabled(enabled);
    };
    const bool selected = Editing().HasSelection();
    const QMimeData *offered = QApplication::clipboard()->mimeData();
    const bool pastes = offered && (offered->hasText() || offered->hasFormat(BytesFormat));
    add(tr("&Undo"), &SQEditSequence::Undo, CanEdit() && Editing().Document().CanUndo());
    add(tr("&Redo"), &SQEditSequence::Redo, CanEdit() && Editing().Document().CanRedo());
    menu->addSeparator();
    add(tr("Cu&t"), &SQEditSequence::Cut, CanEdit() && selected);
    add(tr("&Copy"), &SQEditSequence::Copy, selected);
    add(tr("&Paste"), &SQEditSequence::Paste, CanEdit() && pastes);
    add(tr("&Delete"), &SQEditSequence::Delete, CanEdit() && selected);
    menu->addSeparator();
    add(tr("Select &All"), &SQEditSequence::SelectAll, Editing().Length() > 0);
    return menu;
}

// --- Commands -----------------------------------------------------------------------------------

void SQEditSequence::Undo()
{
    if (!CanEdit())
        return;
    Edit().Undo();
    Announce();
}

void SQEditSequence::Redo()
{
    if (!CanEdit())
        return;
    Edit().Redo();
    Announce();
}

void SQEditSequence::Copy()
{
    if (!Editing().HasSelection())
        return;
    auto copy = std::make_unique<QMimeData>();
    copy->setText(ShownText(Editing().SelectedBytes()));
    copy->setData(BytesFormat, Editing().SelectedBytes());
    QApplication::clipboard()->setMimeData(copy.release());
}

void SQEditSequence::Cut()
{
    Copy();
    Delete();
}

void SQEditSequence::Paste()
{
    const QMimeData *offered = QApplication::clipboard()->mimeData();
    if (!CanEdit() || !offered)
        return;
    Announce(offered->hasFormat(BytesFormat) ? Edit().Insert(offered->data(BytesFormat))
                                             : Edit().Paste(offered->text()));
}

void SQEditSequence::Delete()
{
    if (!CanEdit() || !Editing().HasSelection())
        return;
    Edit().EraseSelection();
    Announce();
}

void SQEditSequence::SelectAll()
{
    SelectBytes(0, Editing().Length());
    PublishSelection();
}

void SQEditSequence::SelectBytes(qsizetype anchor, qsizetype caret)
{
    Edit().Select(anchor, caret);
    Announce();
}

void SQEditSequence::MoveCaret(SequencePlace place)
{
    Edit().PlaceCaret(place);
    Announce();
}

void SQEditSequence::TypeText(QStringView text)
{
    Announce(Edit().Type(text));
}

void SQEditSequence::ToggleOvertyping()
{
    Edit().SetOvertypes(!Editing().Overtypes());
    Announce();
}

// --- Input methods and focus --------------------------------------------------------------------

void SQEditSequence::inputMethodEvent(QInputMethodEvent *event)
{
    if (CanEdit() && !event->commitString().isEmpty())
        TypeText(event->commitString());
    event->accept();
}

QVariant SQEditSequence::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (query == Qt::ImCursorRectangle)
        return CaretRect().translated(viewport()->pos());
    return SequenceView::inputMethodQuery(query);
}

void SQEditSequence::focusOutEvent(QFocusEvent *event)
{
    // Coming back from a menu or another window, the user goes on with the item.
    const bool leaves =
        event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason;
    if (leaves && Editing().IsUnfinished()) {
        Edit().FinishItem();
        Announce();
    }
    SequenceView::focusOutEvent(event);
}
