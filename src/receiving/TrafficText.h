// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"
#include "TrafficEvent.h"

#include <QByteArray>

/// What views and logs show of an event.
namespace TrafficText
{

/// Whether it shows anything at all.
bool IsShown(const TrafficEvent &event);

/// Characters of the bytes alone in a representation.
qsizetype BytesLength(Representation representation, const TrafficEvent &event);

/// What is shown of an event, to be kept without the rest of it.
struct Parts {
    Parts() = default;
    Parts(const TrafficEvent &event)
        : stamp(event.stamp), bytes(event.bytes), comment(event.comment)
    {
    }

    QByteArray stamp, bytes, comment;
};

/// Appends all of it as plain text: stamp, bytes, comment.
void Append(QByteArray &text, Representation representation, const Parts &parts);

} // namespace TrafficText
