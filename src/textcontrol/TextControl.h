// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaretMovement.h"
#include "MouseHold.h"

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <QKeySequence>
#include <QTimer>

#include <memory>

class QMenu;
class QMimeData;

/// Rows of a text in a fixed-pitch font, and what hands do to a text of any kind: the mouse
/// selects, also past the edges, keys move, select, type and use the clipboard, a menu offers the
/// same. A caret blinks while it has the focus. Keys that mean something here are taken before the
/// window's shortcuts. What the text is and how it is painted is the derived class's work.
class TextControl : public QAbstractScrollArea
{
    Q_OBJECT

  public:
    explicit TextControl(QWidget *parent);

    /// Where the caret stands in the viewport.
    virtual QRectF CaretRect() const = 0;
    virtual bool ReadOnly() const = 0;
    virtual bool HasSelection() const = 0;

    void Cut();
    void Copy();
    void Paste();
    void Delete();
    void SelectAll();
    /// What the menu offers, as far as it can do something now; below it what was added to the
    /// control by addAction.
    std::unique_ptr<QMenu> MakeContextMenu();

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

  protected:
    static constexpr int Margin = 4; ///< pixels between the viewport's edges and the text

    struct Cell {
        qsizetype row;
        double column;
    };

    /// Another font, or a screen with other pixels: new measures are to be set.
    virtual void RenewPainter() = 0;
    void SetMeasures(qreal advance, qreal rowHeight) { m_cell = {advance, rowHeight}; }
    /// Renews the painter if the control has come to another screen.
    void FollowScreen();
    /// The rows that can be scrolled over.
    void SetRowCount(qsizetype rows);
    qsizetype FullRows() const;
    int FittingColumns() const;
    void ScrollInSight(qsizetype row);
    /// Under a point of the viewport; above and below the text it is the first or the last row.
    Cell CellAt(const QPointF &point, qsizetype rows) const;
    /// In the viewport.
    QRectF CellRect(qsizetype row, int column, int columns = 1) const;

    virtual bool IsEmpty() const = 0;
    /// As other programs are to see it.
    virtual QString SelectedText() const = 0;
    virtual void SelectWhole() = 0;
    /// Something is selected and can be edited.
    virtual void EraseSelection() = 0;
    /// Shows itself what it refuses.
    virtual void TypeText(const QString &text) = 0;
    virtual void PasteText(const QString &text) { TypeText(text); }
    virtual void Move(CaretMovement movement, bool select) = 0;
    /// The left button goes down at a point of the viewport; with extend the anchor stays.
    virtual void Press(const QPointF &point, CaretUnit unit, bool extend) = 0;
    /// What was pressed stays selected, up to a point of the viewport or beside it.
    virtual void DragTo(const QPointF &point) = 0;
    /// Does what a key asks for that edits, or, when not in earnest, only tells whether it would.
    virtual bool HandleEditingKey(const QKeyEvent &event, bool inEarnest) = 0;

    /// The keys of Copy, Cut, Paste and SelectAll: those of the system unless a control has others.
    virtual QList<QKeySequence> KeysOf(QKeySequence::StandardKey command) const
    {
        return QKeySequence::keyBindings(command);
    }
    /// A control may copy and paste more than plain text.
    virtual void AddToCopy(QMimeData &) const {}
    virtual bool CanTake(const QMimeData &offered) const;
    virtual void Take(const QMimeData &offered);
    /// Entries above the usual ones of the menu.
    virtual void AddOwnEntries(QMenu &) {}

    bool CanEdit() const { return !ReadOnly() && isEnabled(); }
    /// The screen's point under the caret, for a menu or a tool tip.
    QPoint BelowCaret() const;
    bool CaretVisible() const { return m_caretVisible; }
    /// Shows the caret anew, for it was moved or the focus changed.
    void RestartBlinking();

    /// The key with its modifiers; on which part of the keyboard it is makes no difference.
    static QKeySequence KeyOf(const QKeyEvent &event);
    /// The text that a key press types; empty for keys that type none.
    static QString TypedText(const QKeyEvent &event);

    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

  private:
    void ToggleCaret();
    bool HandleKey(const QKeyEvent &event, bool inEarnest);
    bool HandleMovementKey(const QKeyEvent &event, bool inEarnest);
    bool HandleCommandKey(const QKeyEvent &event, bool inEarnest);
    void Hold(const QMouseEvent &event, CaretUnit unit);
    void DragOn();
    void EndDrag();
    void PublishSelection();

    QSizeF m_cell{1, 1};
    qreal m_pixelRatio = 1;
    QTimer m_blinking;
    bool m_caretVisible = false;
    MouseHold m_hold;
    QTimer m_dragging; ///< scrolls on past an edge
    QPointF m_mouse;
    QElapsedTimer m_sinceDoubleClick;
    QPointF m_doubleClick;
};
