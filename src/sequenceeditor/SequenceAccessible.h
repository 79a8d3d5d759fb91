// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequencePlace.h"
#include "TextAccessible.h"

class SQEditSequence;

/// What a screen reader learns of a sequence editor control: the text as it is shown, control
/// characters as their pictures in Unicode, so one character a byte in ASCII.
class SequenceAccessible final : public TextAccessible
{
  public:
    /// Factory for QAccessible::installFactory.
    static QAccessibleInterface *Create(const QString &className, QObject *object);

    explicit SequenceAccessible(SQEditSequence &control);

    QString text(QAccessible::Text kind) const override;

    int characterCount() const override;
    using TextAccessible::text;
    QString text(int startOffset, int endOffset) const override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    void selection(int index, int *startOffset, int *endOffset) const override;
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
