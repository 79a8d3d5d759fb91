// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QLineEdit>

/// A line of text that code page 1252 can hold. A character that it lacks is refused with a tool
/// tip that names it, a pasted text with such a character is refused whole; pasted line breaks
/// become blanks.
class CodePageEdit final : public QLineEdit
{
    Q_OBJECT

  public:
    explicit CodePageEdit(QWidget *parent = nullptr);

    /// As it was given to SetText while it reads as then, line breaks included.
    QByteArray Text() const;
    void SetText(const QByteArray &text);

  private:
    QByteArray m_given;
    QString m_shown;   ///< as what it was shown then
    QString m_refusal; ///< why the latest input was refused
};
