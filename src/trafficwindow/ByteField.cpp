// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ByteField.h"

#include "CodePage1252.h"
#include "SequenceText.h"

#include <utility>

ByteField::ByteField(QWidget *parent) : QLineEdit(parent)
{
    setClearButtonEnabled(true);
}

void ByteField::SetForm(Representation form)
{
    const bool readable = Refusal().isEmpty();
    const QByteArray bytes = Bytes();
    if (std::exchange(m_form, form) != form && readable)
        SetBytes(bytes);
}

QByteArray ByteField::Bytes() const
{
    return SequenceText::Parse(text(), m_form).bytes;
}

QString ByteField::Refusal() const
{
    return SequenceText::Parse(text(), m_form).refusal;
}

void ByteField::SetBytes(const QByteArray &bytes)
{
    setText(CodePage1252::ToUnicode(SequenceText::Of(bytes, m_form)));
}
