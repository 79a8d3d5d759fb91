// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextTyping.h"

#include "CodePage1252.h"
#include "RichTextModel.h"

namespace RichTextTyping
{

QString Insert(RichTextModel &model, QStringView text, const TextStyle &style)
{
    const CodePage1252::Encoded encoded = CodePage1252::FromUnicode(text);
    if (encoded.firstForeign >= 0)
        return CodePage1252::RefusalOf(text, encoded.firstForeign);
    model.Replace(model.SelectionStart(), model.SelectionEnd(), encoded.bytes, style);
    return {};
}

void RemoveSelection(RichTextModel &model)
{
    model.Replace(model.SelectionStart(), model.SelectionEnd(), {}, {});
}

} // namespace RichTextTyping
