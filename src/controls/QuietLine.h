// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

/// Tells something about a field, below it, and asks for nothing. Its place, two rows of text, is
/// kept while it says nothing, so that nothing moves under a hand that types.
class QuietLine final : public QLabel
{
    Q_OBJECT

  public:
    /// The line becomes the description that assistive programs read of the field.
    explicit QuietLine(QWidget &field, QWidget *parent = nullptr);

    /// Nothing to say hides the line.
    void Say(const QString &text);

  protected:
    void changeEvent(QEvent *event) override;

  private:
    void KeepPlace();

    QWidget &m_field;
};
