// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureEncoder.h"

/// A capture of what has happened, as the program writes it.
inline QByteArray CaptureOf(const QList<TrafficEvent> &events, const QList<TrafficPort> &ports)
{
    CaptureEncoder encoder(ports, "Serimonde");
    QByteArray capture = encoder.Head();
    for (const TrafficEvent &event : events)
        encoder.Append(capture, event);
    return capture;
}
