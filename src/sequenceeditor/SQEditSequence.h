// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequenceView.h"

#include <QElapsedTimer>

#include <memory>

class QMenu;

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

    bool ReadOnly() const { return m_readOnly; }
    void SetReadOnly(bool readOnly);

    void Undo();
    void Redo();
    void Cut();
    void Copy();
    /// Refused whole, with a tool tip, if it cannot be read.
    void Paste();
    void Delete();
    void SelectAll();
    /// What the menu offers, as far as it can do something now.
    std::unique_ptr<QMenu> MakeContextMenu();

    /// For assistive programs.
    void SelectBytes(qsizetype anchor, qsizetype caret);
    void MoveCaret(SequencePlace place);
    /// The byte whose cell is at a point of the viewport, -1 if there is none.
    qsizetype ByteAt(const QPointF &point) const;

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

  Q_SIGNALS:
    /// The user's own hand has changed the sequence.
    void Changed();

  protected:
    bool viewportEvent(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

  private:
    bool CanEdit() const { return !m_readOnly && isEnabled(); }
    void FollowEditability();
    /// Shows what was done, raises Changed if the bytes are others, tells what was refused.
    void Announce(const QString &refusal = {}, RowEnd rowEnd = RowEnd::No);
    /// Tells whether the bytes are others than were shown before.
    bool Show(const QString &refusal, RowEnd rowEnd);
    void TellAssistivePrograms(bool changed);
    void ShowRefusal(const QString &refusal);

    bool HandleKey(const QKeyEvent &event, bool inEarnest) override;
    bool HandleMovementKey(const QKeyEvent &event, bool inEarnest);
    bool HandleCommandKey(const QKeyEvent &event, bool inEarnest);
    bool HandleTypingKey(const QKeyEvent &event, bool inEarnest);
    void MoveRows(qsizetype rows, bool select);
    void MoveInRow(bool toEnd, bool select);
    void PlaceInRow(Cell cell, bool select);
    void TypeText(QStringView text);
    void ToggleOvertyping();

    void Press(const QMouseEvent &event);
    void Drag();
    void DragOn();
    void PublishSelection();
    QString ShownText(const QByteArray &bytes) const;
    QString Description(qsizetype byte) const;

    bool m_readOnly = false;
    bool m_refusalShown = false;
    quint64 m_announcedRevision = 0;
    int m_wantedColumn = -1; ///< kept while the caret moves through rows

    QTimer m_dragging;
    QPointF m_mouse;
    qsizetype m_pressedFrom = 0; ///< what stays selected while the mouse is dragged
    qsizetype m_pressedTo = 0;
    QElapsedTimer m_sinceDoubleClick;
};
