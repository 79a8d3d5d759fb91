// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CodePage1252.h"
#include "RichTextModel.h"
#include "RichTextView.h"

#include <QSet>

/// A rich-text view in which the user selects, copies and, unless the model is read-only, types.
class RichTextBox final : public RichTextView
{
    Q_OBJECT

  public:
    explicit RichTextBox(RichTextModel &model, QWidget *parent = nullptr);

    /// The style of what the user types.
    void SetTypingStyle(const TextStyle &style) { m_typingStyle = style; }

    bool ReadOnly() const override { return Model().ReadOnly(); }
    bool HasSelection() const override { return Model().HasSelection(); }

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

  Q_SIGNALS:
    /// A key or a mouse button was released that had been pressed here; start of the selection, as
    /// the model counts.
    void CaretReleased(qint64 position);

  protected:
    bool IsEmpty() const override { return Model().Length() == 0; }
    QString SelectedText() const override
    {
        return CodePage1252::ToUnicode(Model().SelectedText());
    }
    void SelectWhole() override { Model().Select(Model().Begin(), Model().End()); }
    void EraseSelection() override;
    void TypeText(const QString &text) override;
    void Move(CaretMovement movement, bool select) override;
    void Press(const QPointF &point, CaretUnit unit, bool extend) override;
    void DragTo(const QPointF &point) override;
    bool HandleEditingKey(const QKeyEvent &event, bool inEarnest) override;

    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

  private:
    void FollowReadOnly();
    bool LeavesCaret(const QKeyEvent &event) const;
    void EraseTowards(CaretMovement movement);

    TextStyle m_typingStyle;
    QSet<int> m_pressedKeys; ///< those held down whose press came here and moves the caret
    Qt::MouseButtons m_pressedButtons;
};
