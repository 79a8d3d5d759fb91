// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextSteps.h"

#include "CodePage1252.h"
#include "RichTextModel.h"

#include <QChar>

namespace
{

enum class Kind { Blank, LineBreak, Word, Sign };

Kind KindAt(const RichTextModel &model, qint64 position)
{
    const uchar byte = model.ByteAt(position);
    if (byte == '\r' || byte == '\n')
        return Kind::LineBreak;
    if (byte == ' ' || byte == '\t' || byte == 0xA0)
        return Kind::Blank;
    const QChar character = CodePage1252::ToUnicode(byte);
    return character.isLetterOrNumber() || character == u'_' ? Kind::Word : Kind::Sign;
}

qint64 SkipForward(const RichTextModel &model, qint64 position, Kind kind)
{
    while (position < model.End() && KindAt(model, position) == kind)
        ++position;
    return position;
}

qint64 SkipBackward(const RichTextModel &model, qint64 position, Kind kind)
{
    while (position > model.Begin() && KindAt(model, position - 1) == kind)
        --position;
    return position;
}

} // namespace

namespace RichTextSteps
{

bool IsInsideCrLf(const RichTextModel &model, qint64 position)
{
    return position > model.Begin() && position < model.End() &&
           model.ByteAt(position - 1) == '\r' && model.ByteAt(position) == '\n';
}

qint64 Next(const RichTextModel &model, qint64 position)
{
    if (position >= model.End())
        return model.End();
    return IsInsideCrLf(model, position + 1) ? position + 2 : position + 1;
}

qint64 Previous(const RichTextModel &model, qint64 position)
{
    if (position <= model.Begin())
        return model.Begin();
    return IsInsideCrLf(model, position - 1) ? position - 2 : position - 1;
}

qint64 NextWord(const RichTextModel &model, qint64 position)
{
    if (position >= model.End())
        return model.End();
    const Kind kind = KindAt(model, position);
    position = kind == Kind::LineBreak ? Next(model, position) : SkipForward(model, position, kind);
    return SkipForward(model, position, Kind::Blank);
}

qint64 PreviousWord(const RichTextModel &model, qint64 position)
{
    position = SkipBackward(model, position, Kind::Blank);
    if (position <= model.Begin())
        return model.Begin();
    const Kind kind = KindAt(model, position - 1);
    return kind == Kind::LineBreak ? Previous(model, position)
                                   : SkipBackward(model, position, kind);
}

Span WordAt(const RichTextModel &model, qint64 position)
{
    const auto endsLine = [&model](qint64 at) {
        return at >= model.End() || KindAt(model, at) == Kind::LineBreak;
    };
    if (endsLine(position) && position > model.Begin() && !endsLine(position - 1))
        --position;
    if (endsLine(position))
        return {position, position};
    const Kind kind = KindAt(model, position);
    return {SkipBackward(model, position, kind), SkipForward(model, position, kind)};
}

Span LineAt(const RichTextModel &model, qint64 position)
{
    qint64 from = IsInsideCrLf(model, position) ? position - 1 : position;
    qint64 to = from;
    while (from > model.Begin() && KindAt(model, from - 1) != Kind::LineBreak)
        --from;
    while (to < model.End() && KindAt(model, to) != Kind::LineBreak)
        ++to;
    return {from, Next(model, to)};
}

} // namespace RichTextSteps
