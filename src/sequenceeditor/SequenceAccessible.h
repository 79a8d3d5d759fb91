// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequencePlace.h"

#include <QAccessibleTextInterface>
#include <QAccessibleWidget>

class SQEditSequence;

/// What a screen reader learns of a sequence editor control: the text as it is shown, control
/// characters as their pictures in Unicode, so one character a byte in ASCII. Lives as long as its
/// control, owned by the toolkit.
class SequenceAccessible final : public QAccessibleWidget, public QAccessibleTextInterface
{
  public:
    /// Factory for QAccessible::installFactory.
    static QAccessibleInterface *Create(const QString &className, QObject *object);

    explicit SequenceAccessible(SQEditSequence &control);

    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    void *interface_cast(QAccessible::InterfaceType type) override;

    int characterCount() const override;
    using QAccessibleWidget::text; // the texts of the widget, beside those of its content
    QString text(int startOffset, int endOffset) const override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    int selectionCount() const override;
    void selection(int index, int *startOffset, int *endOffset) const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int index) override;
    void setSelection(int index, int startOffset, int endOffset) override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint &point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    QString attributes(int offset, int *startOffset, int *endOffset) const override;

  private:
    QString ShownText() const;
    int Pitch() const;
    SequencePlace PlaceOf(int offset) const;
    int OffsetOf(SequencePlace place) const;

    SQEditSequence &m_control;
};
