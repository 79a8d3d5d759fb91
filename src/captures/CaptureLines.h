// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureFormat.h"
#include "Line.h"

/// Modem lines in the record of a capture.
namespace CaptureLines
{

inline quint8 Of(const ModemLines &lines)
{
    using namespace CaptureFormat;
    return quint8((lines.CTS ? LineCTS : 0) | (lines.DSR ? LineDSR : 0) |
                  (lines.DCD ? LineDCD : 0) | (lines.RI ? LineRI : 0));
}

inline ModemLines From(quint8 record)
{
    using namespace CaptureFormat;
    return {.CTS = (record & LineCTS) != 0,
            .DSR = (record & LineDSR) != 0,
            .DCD = (record & LineDCD) != 0,
            .RI = (record & LineRI) != 0};
}

} // namespace CaptureLines
