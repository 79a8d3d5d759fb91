// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Judgement.h"

/// What is shown of a judgement, in windows and in reports alike: plain text of one line each.
namespace PlaceRows
{

/// Of a time in nanoseconds since 1970: the day and the local time, in microseconds.
QString TimeText(qint64 time);

/// A name or another 8-bit text of a stranger.
QString NameText(const QByteArray &name);

/// The port's name, or the channel's number where the capture tells none.
QString ChannelText(const Judgement &judgement, int channel);

/// "12", "never", or why it cannot fire.
QString FiredText(const JudgedSequence &sequence);
/// Name and bytes of what would be sent; empty for nothing.
QString AnswerText(const JudgedSequence &sequence);
QString WhatText(const JudgedPlace &place);
/// Of near misses: what came, with those bytes in brackets that are others; else empty.
QString FoundText(const Judgement &judgement, const JudgedPlace &place);
/// The bytes of the place's sequence.
QString ExpectedText(const Judgement &judgement, const JudgedPlace &place);

/// What is not told of the places, one sentence; empty if all of them are there.
QString LimitText(const Judgement &judgement);

/// Bytes with brackets around those of which marks is true; a byte without a mark has none. Of more
/// than 64 only the beginning, followed by "...".
QString HexText(QByteArrayView bytes, const std::vector<bool> &marks = {});
/// The same as characters; control characters by their names, such as "<CR>".
QString AsciiText(QByteArrayView bytes, const std::vector<bool> &marks = {});

} // namespace PlaceRows
