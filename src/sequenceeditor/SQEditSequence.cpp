// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SQEditSequence.h"

#include "ByteLook.h"
#include "CodePage1252.h"
#include "SequenceAccessible.h"
#include "SequenceText.h"
#include "frmInsertChecksum.h"

#include <QAccessible>
#include <QFocusEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QMimeData>
#include <QTextDocument>
#include <QToolTip>

#include <utility>

namespace
{

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
    setInputMethodHints(Qt::ImhNoPredictiveText | Qt::ImhNoAutoUppercase);
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
        ShowTip(BelowCaret(), refusal, this);
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
    const QByteArrayView name = ByteLook::NameOf(value);
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
    AnnounceIn(cell);
}

void SQEditSequence::AnnounceIn(Cell cell)
{
    const bool behind = Layout().RowOf(Editing().Caret().byte) > cell.row;
    Announce({}, behind ? RowEnd::Yes : RowEnd::No);
}

void SQEditSequence::Press(const QPointF &point, CaretUnit unit, bool extend)
{
    if (unit == CaretUnit::Character) {
        PlaceInRow(CellAt(point), extend);
        const Cell cell = CellAt(point);
        m_pressedFrom = HasSelection()
                            ? Editing().Anchor()
                            : qMin(Layout().BorderAt(cell.row, cell.column), Editing().Length());
        m_pressedTo = m_pressedFrom;
        return;
    }
    if (unit == CaretUnit::Line) {
        SelectAll();
    } else {
        const Cell cell = CellAt(point);
        Edit().SelectUnitAt(Layout().ByteUnder(cell.row, cell.column));
        Announce();
    }
    m_pressedFrom = Editing().SelectionStart();
    m_pressedTo = Editing().SelectionEnd();
}

void SQEditSequence::DragTo(const QPointF &point)
{
    const Cell cell = CellAt(point);
    const qsizetype border = Layout().BorderAt(cell.row, cell.column);
    const bool inside = border >= m_pressedFrom && border <= m_pressedTo;
    if (inside && m_pressedFrom == m_pressedTo && !HasSelection())
        return; // the caret stays on the digit that was clicked
    if (border < m_pressedFrom)
        Edit().Select(m_pressedTo, border);
    else
        Edit().Select(m_pressedFrom, qMax(border, m_pressedTo));
    AnnounceIn(cell);
}

// --- Commands -----------------------------------------------------------------------------------

void SQEditSequence::AddOwnEntries(QMenu &menu)
{
    const SequenceDocument &document = Editing().Document();
    menu.addAction(tr("&Undo"), this, &SQEditSequence::Undo)
        ->setEnabled(CanEdit() && document.CanUndo());
    menu.addAction(tr("&Redo"), this, &SQEditSequence::Redo)
        ->setEnabled(CanEdit() && document.CanRedo());
    menu.addSeparator();
    menu.addAction(tr("&Insert Checksum..."), this, &SQEditSequence::InsertChecksum)
        ->setEnabled(CanEdit() && !IsEmpty());
    menu.addSeparator();
}

void SQEditSequence::Do(void (SequenceEditing::*edit)())
{
    (Edit().*edit)();
    Announce();
}

void SQEditSequence::Undo()
{
    if (CanEdit())
        Do(&SequenceEditing::Undo);
}

void SQEditSequence::Redo()
{
    if (CanEdit())
        Do(&SequenceEditing::Redo);
}

void SQEditSequence::Replace(const QByteArray &sequence)
{
    Edit().Select(0, Editing().Length());
    if (sequence.isEmpty())
        Do(&SequenceEditing::EraseSelection);
    else
        Announce(Edit().Insert(sequence));
}

void SQEditSequence::InsertChecksum()
{
    if (!CanEdit())
        return;
    ChecksumRule offered = *m_checksum;
    if (HasSelection())
        offered.first = Editing().SelectionStart() + 1;
    frmInsertChecksum dialog(Sequence(), Editing().SelectionEnd(), offered, window());
    if (dialog.exec() != QDialog::Accepted)
        return;
    *m_checksum = dialog.Rule();
    Edit().PlaceCaret({dialog.Last(), 0});
    Announce(Edit().Insert(dialog.Bytes()));
}

void SQEditSequence::AddToCopy(QMimeData &copy) const
{
    copy.setData(BytesFormat, Editing().SelectedBytes());
}

bool SQEditSequence::CanTake(const QMimeData &offered) const
{
    return offered.hasText() || offered.hasFormat(BytesFormat);
}

void SQEditSequence::Take(const QMimeData &offered)
{
    if (offered.hasFormat(BytesFormat))
        Announce(Edit().Insert(offered.data(BytesFormat)));
    else
        PasteText(offered.text());
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
