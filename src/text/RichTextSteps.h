// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

class RichTextModel;

/// Where a caret can go in a rich-text model. CR LF counts as one character. All positions given
/// must lie in the content, its end included.
namespace RichTextSteps
{

struct Span {
    qint64 from;
    qint64 to;

    bool operator==(const Span &) const = default;
};

qint64 Next(const RichTextModel &model, qint64 position);
qint64 Previous(const RichTextModel &model, qint64 position);

/// Start of the next word; a line break is a word of its own.
qint64 NextWord(const RichTextModel &model, qint64 position);
/// Start of the word before the position.
qint64 PreviousWord(const RichTextModel &model, qint64 position);

/// The letters and digits, the blanks or the signs around a position. At the end of a line it is
/// what stands before.
Span WordAt(const RichTextModel &model, qint64 position);
/// From one line break to behind the next.
Span LineAt(const RichTextModel &model, qint64 position);

bool IsInsideCrLf(const RichTextModel &model, qint64 position);

} // namespace RichTextSteps
