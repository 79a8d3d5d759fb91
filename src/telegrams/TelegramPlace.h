// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureReader.h"
#include "TelegramCutter.h"

/// Where a telegram begins in its source, with all that is needed to go on from it.
struct TelegramPlace {
    qint64 part = -1;         ///< of the source; negative for the first that is there
    CaptureReader::Mark mark; ///< of the packet
    bool isMarked = false;    ///< else it is the part's first one
    qsizetype passed = 0;     ///< bytes of the packet that are of rows before
    bool isBehind = false;    ///< all that the packet tells is, but for what it leaves out
    qint64 wall = 0;          ///< time of the packet
    TelegramCut cut;          ///< before the telegram
};
