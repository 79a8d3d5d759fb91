// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RichTextView.h"

#include <QElapsedTimer>
#include <QSet>

#include <memory>

class QMenu;

/// A rich-text view in which the user selects, copies and, unless the model is read-only, types.
class RichTextBox final : public RichTextView
{
    Q_OBJECT

  public:
    explicit RichTextBox(RichTextModel &model, QWidget *parent = nullptr);

    /// The style of what the user types.
    void SetTypingStyle(const TextStyle &style) { m_typingStyle = style; }

    void Copy();
    void Cut();
    void Paste();
    void Delete();
    void SelectAll();
    /// Cut, Copy, Paste, Delete and Select All, as far as they can do something now.
    std::unique_ptr<QMenu> MakeContextMenu();

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

  Q_SIGNALS:
    /// A key or a mouse button was released that had been pressed here; start of the selection, as
    /// the model counts.
    void CaretReleased(qint64 position);

  protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

  private:
    void FollowReadOnly();

    void Press(const QMouseEvent &event, RichTextCaret::Unit unit);
    void Drag();
    void DragOn();
    void ReleaseCaret();
    void PublishSelection();

    bool HandleKey(const QKeyEvent &event, bool inEarnest) override;
    bool HandleMovementKey(const QKeyEvent &event, bool inEarnest);
    bool HandleCommandKey(const QKeyEvent &event, bool inEarnest);
    bool HandleEditingKey(const QKeyEvent &event, bool inEarnest);
    void Insert(const QString &text);
    void MoveCaret(RichTextCaret::Movement movement, bool select);
    void EraseTowards(RichTextCaret::Movement movement);
    bool CanEdit() const;

    TextStyle m_typingStyle;
    QSet<int> m_pressedKeys; ///< those held down whose press came here
    Qt::MouseButtons m_pressedButtons;
    QTimer m_dragging;
    QPointF m_mouse;
    QElapsedTimer m_sinceDoubleClick;
    QPointF m_doubleClick;
};
