// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TrafficEvent.h"

#include <QStringList>

/// What the comments on a packet say of an event, for whoever looks at a capture with another
/// program, and what they give back when it is read again.
namespace CaptureRemarks
{

/// Whether one event can tell of several of its kind; its count is 1 at least.
constexpr bool MayBeSeveral(TrafficEvent::Kind kind)
{
    using Kind = TrafficEvent::Kind;
    return kind == Kind::Damaged || kind == Kind::Break || kind == Kind::Overrun;
}

/// The comments on an event's packet, in order.
QStringList Of(const TrafficEvent &event);

/// Whether a comment, in UTF-8, says that the order is uncertain.
bool IsOrderUncertain(QByteArrayView comment);

/// Completes an event that was read with what its comments say; what is no remark of ours counts as
/// a name on received and sent bytes, and as nothing elsewhere.
void Apply(const QString &remark, TrafficEvent &event);

/// The comment on an interface that is not the first of its channel (0 or 1), and back: negative
/// if the text is none.
QString OfChannel(int channel);
int ChannelOf(const QString &remark);

} // namespace CaptureRemarks
