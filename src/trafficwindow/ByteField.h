// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"

#include <QLineEdit>

/// One line in which bytes are typed, in the form that stands beside it, by the rules of pasting:
/// "0D 0A", "0x0D, 0x0A", "0D0A".
class ByteField final : public QLineEdit
{
    Q_OBJECT

  public:
    explicit ByteField(QWidget *parent = nullptr);

    Representation Form() const { return m_form; }
    /// The bytes stay, as far as they could be read.
    void SetForm(Representation form);

    QByteArray Bytes() const;
    /// Why the text is no bytes, empty if it is.
    QString Refusal() const;
    void SetBytes(const QByteArray &bytes);

  private:
    Representation m_form = Representation::Ascii;
};
