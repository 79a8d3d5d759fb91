// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RichTextSteps.h"
#include "TextAccessible.h"

class RichTextBox;

/// What a screen reader learns of a rich-text box. Offsets count characters from the begin of the
/// content.
class RichTextAccessible final : public TextAccessible
{
  public:
    /// Factory for QAccessible::installFactory.
    static QAccessibleInterface *Create(const QString &className, QObject *object);

    explicit RichTextAccessible(RichTextBox &box);

    int characterCount() const override;
    using TextAccessible::text;
    QString text(int startOffset, int endOffset) const override;
    QString textBeforeOffset(int offset, QAccessible::TextBoundaryType boundary, int *startOffset,
                             int *endOffset) const override;
    QString textAfterOffset(int offset, QAccessible::TextBoundaryType boundary, int *startOffset,
                            int *endOffset) const override;
    QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int *startOffset,
                         int *endOffset) const override;
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
    qint64 PositionOf(int offset) const;
    int OffsetOf(qint64 position) const;
    RichTextSteps::Span SpanAt(qint64 position, QAccessible::TextBoundaryType boundary) const;
    QString Tell(RichTextSteps::Span span, int *startOffset, int *endOffset) const;

    RichTextBox &m_box;
};
