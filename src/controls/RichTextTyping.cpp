// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "controls/RichTextTyping.h"

#include "controls/RichTextModel.h"
#include "repr/CodePage1252.h"

namespace
{

QString Refusal(QStringView text, qsizetype foreign)
{
    const bool pair = foreign + 1 < text.size() && text[foreign].isHighSurrogate() &&
                      text[foreign + 1].isLowSurrogate();
    const QStringView character = text.sliced(foreign, pair ? 2 : 1);
    const char32_t code = pair ? QChar::surrogateToUcs4(character[0], character[1])
                               : char32_t(character[0].unicode());
    const QString number = QString::number(uint(code), 16).toUpper().rightJustified(4, u'0');
    return QStringLiteral("The character %1 (U+%2) is not in code page 1252.")
        .arg(character.toString(), number);
}

} // namespace

namespace RichTextTyping
{

QString Insert(RichTextModel &model, QStringView text, const TextStyle &style)
{
    const CodePage1252::Encoded encoded = CodePage1252::FromUnicode(text);
    if (encoded.firstForeign >= 0)
        return Refusal(text, encoded.firstForeign);
    model.Replace(model.SelectionStart(), model.SelectionEnd(), encoded.bytes, style);
    return {};
}

void RemoveSelection(RichTextModel &model)
{
    model.Replace(model.SelectionStart(), model.SelectionEnd(), {}, {});
}

} // namespace RichTextTyping
