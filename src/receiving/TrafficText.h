// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"
#include "TrafficEvent.h"

/// What views and logs show of an event.
namespace TrafficText
{

/// Whether it shows anything at all.
bool IsShown(const TrafficEvent &event);

/// Characters of the bytes alone in a representation.
qsizetype BytesLength(Representation representation, const TrafficEvent &event);

/// Appends all of it as plain text: stamp, bytes, comment.
void Append(QByteArray &text, Representation representation, const TrafficEvent &event);

} // namespace TrafficText
