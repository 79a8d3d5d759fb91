// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TextControl.h"

#include <QAccessibleTextInterface>
#include <QAccessibleWidget>

/// What a screen reader learns of a text control: here that it is one, and that it has one
/// selection at most. Offsets count the characters that the derived class tells; -1 is the end, -2
/// the caret. Lives as long as its control, owned by the toolkit.
class TextAccessible : public QAccessibleWidget, public QAccessibleTextInterface
{
  public:
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = m_control.ReadOnly();
        state.editable = !state.readOnly;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }
    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    using QAccessibleWidget::text; // the texts of the widget, beside those of its content
    QString text(int startOffset, int endOffset) const override = 0;

    int selectionCount() const override { return m_control.HasSelection() ? 1 : 0; }
    void addSelection(int startOffset, int endOffset) override
    {
        setSelection(0, startOffset, endOffset);
    }

  protected:
    explicit TextAccessible(TextControl &control)
        : QAccessibleWidget(&control, QAccessible::EditableText), m_control(control)
    {
    }

    QRect OnScreen(const QRectF &inViewport) const
    {
        const QRect rect = inViewport.toAlignedRect();
        return {m_control.viewport()->mapToGlobal(rect.topLeft()), rect.size()};
    }

  private:
    TextControl &m_control;
};
