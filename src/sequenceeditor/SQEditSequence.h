// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Checksum.h"
#include "SequenceView.h"

/// The sequence editor control: one byte sequence, typed in one of four forms. How digits, blanks
/// and erasing work is told by SequenceEditing, what can be pasted by SequenceText.
///
/// In ASCII Enter types CR, Ctrl+Enter LF, Ctrl+Tab TAB. In the digit forms Enter is left to the
/// dialog. Tab alone moves the focus on in every form. The Insert key changes between inserting and
/// overtyping.
///
/// What is copied here carries its bytes along, so it can be pasted into any form; other programs
/// see the text of the form.
class SQEditSequence final : public SequenceView
{
    Q_OBJECT
    Q_PROPERTY(int editmode READ EditMode WRITE SetEditMode)
    Q_PROPERTY(QByteArray sequence READ Sequence WRITE SetSequence NOTIFY Changed)
    Q_PROPERTY(bool readOnly READ ReadOnly WRITE SetReadOnly)

  public:
    explicit SQEditSequence(QWidget *parent = nullptr);

    /// An unfinished item counts with the value of its digits.
    QByteArray Sequence() const { return Editing().Bytes(); }
    /// Clears the history and raises no Changed.
    void SetSequence(const QByteArray &sequence);

    /// The sequence as its editor shows it: the bytes themselves in ASCII, else items separated by
    /// one blank.
    QByteArray Text(Representation form) const;

    /// 0 ASCII, 1 Decimal, 2 HEX, 3 Binary; not the order of the representations. Any other number
    /// is taken for ASCII.
    int EditMode() const;
    void SetEditMode(int mode);

    bool ReadOnly() const override { return m_readOnly; }
    void SetReadOnly(bool readOnly);
    bool HasSelection() const override { return Editing().HasSelection(); }

    void Undo();
    void Redo();
    /// Other bytes by the user's hand: one step to undo.
    void Replace(const QByteArray &sequence);
    /// Asks for a checksum of what is selected, else of what stands before the caret, else of all,
    /// and inserts its bytes: one step to undo.
    void InsertChecksum();
    /// Where the rule is kept that was chosen last; it lives as long as the control.
    void KeepChecksumRule(ChecksumRule &rule) { m_checksum = &rule; }

    /// For assistive programs.
    void SelectBytes(qsizetype anchor, qsizetype caret);
    void MoveCaret(SequencePlace place);
    /// The byte whose cell is at a point of the viewport, -1 if there is none.
    qsizetype ByteAt(const QPointF &point) const;

  Q_SIGNALS:
    /// The user's own hand has changed the sequence.
    void Changed();

  protected:
    bool IsEmpty() const override { return Editing().Length() == 0; }
    QString SelectedText() const override { return ShownText(Editing().SelectedBytes()); }
    void SelectWhole() override { SelectBytes(0, Editing().Length()); }
    void EraseSelection() override { Do(&SequenceEditing::EraseSelection); }
    void TypeText(const QString &text) override { Announce(Edit().Type(text)); }
    /// Refused whole, with a tool tip, if it cannot be read.
    void PasteText(const QString &text) override { Announce(Edit().Paste(text)); }
    void Move(CaretMovement movement, bool select) override;
    void Press(const QPointF &point, CaretUnit unit, bool extend) override;
    void DragTo(const QPointF &point) override;
    bool HandleEditingKey(const QKeyEvent &event, bool inEarnest) override;
    QList<QKeySequence> KeysOf(QKeySequence::StandardKey command) const override;
    void AddToCopy(QMimeData &copy) const override;
    bool CanTake(const QMimeData &offered) const override;
    void Take(const QMimeData &offered) override;
    void AddOwnEntries(QMenu &menu) override;

    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

  private:
    void FollowEditability();
    void Do(void (SequenceEditing::*edit)());
    /// Shows what was done, raises Changed if the bytes are others, tells what was refused.
    void Announce(const QString &refusal = {}, RowEnd rowEnd = RowEnd::No);
    /// Tells whether the bytes are others than were shown before.
    bool Show(const QString &refusal, RowEnd rowEnd);
    void TellAssistivePrograms(bool changed);
    void ShowRefusal(const QString &refusal);

    void MoveRows(qsizetype rows, bool select);
    void PlaceInRow(Cell cell, bool select);
    /// The caret stands where a cell was pressed: if that is behind it, at the row's end.
    void AnnounceIn(Cell cell);

    QString ShownText(const QByteArray &bytes) const;
    QString Description(qsizetype byte) const;

    bool m_readOnly = false;
    bool m_refusalShown = false;
    ChecksumRule m_ownChecksum;
    ChecksumRule *m_checksum = &m_ownChecksum; ///< chosen last
    quint64 m_announcedRevision = 0;
    int m_wantedColumn = -1; ///< kept while the caret moves through rows

    qsizetype m_pressedFrom = 0; ///< what stays selected while the mouse is dragged
    qsizetype m_pressedTo = 0;
};
