// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractScrollArea>
#include <QTimer>

/// A scroll area with a caret that blinks while it has the focus, and with keys that are taken
/// before the window's shortcuts where they mean something here.
class CaretScrollArea : public QAbstractScrollArea
{
    Q_OBJECT

  public:
    explicit CaretScrollArea(QWidget *parent);

    /// Where the caret stands in the viewport.
    virtual QRectF CaretRect() const = 0;

  protected:
    /// Does what a key asks for, or, when not in earnest, only tells whether it would.
    virtual bool HandleKey(const QKeyEvent &event, bool inEarnest) = 0;

    bool CaretVisible() const { return m_caretVisible; }
    /// Shows the caret anew, for it was moved or the focus changed.
    void RestartBlinking();

    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

  private:
    void ToggleCaret();

    QTimer m_blinking;
    bool m_caretVisible = false;
};
