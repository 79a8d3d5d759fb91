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

void TrafficText::Append(QByteArray &text, Representation representation, const Parts &parts)
{
    if (!parts.stamp.isEmpty())
        text += parts.stamp;
    RowOf(representation).appendView(text, parts.bytes);
    if (!parts.comment.isEmpty())
        text += parts.comment;
}
