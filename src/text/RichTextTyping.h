// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TextStyle.h"

#include <QString>

class RichTextModel;

/// The user's own changes to a rich-text model.
namespace RichTextTyping
{

/// Replaces the selection by the text. A text with a character that code page 1252 lacks is
/// refused whole; the result then says so and names the first such character.
QString Insert(RichTextModel &model, QStringView text, const TextStyle &style);

void RemoveSelection(RichTextModel &model);

} // namespace RichTextTyping
