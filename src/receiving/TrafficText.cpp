// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficText.h"

bool TrafficText::IsShown(const TrafficEvent &event)
{
    return !event.bytes.isEmpty() || !event.stamp.isEmpty() || !event.comment.isEmpty();
}

qsizetype TrafficText::BytesLength(Representation representation, const TrafficEvent &event)
{
    return event.bytes.size() * ViewWidth(representation);
}

void TrafficText::Append(QByteArray &text, Representation representation, const TrafficEvent &event)
{
    if (!event.stamp.isEmpty())
        text += event.stamp;
    RowOf(representation).appendView(text, event.bytes);
    if (!event.comment.isEmpty())
        text += event.comment;
}
