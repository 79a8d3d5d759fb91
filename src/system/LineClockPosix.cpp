// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineClock.h"

#include <ctime>

namespace
{

qint64 Read(clockid_t clock)
{
    timespec now = {};
    ::clock_gettime(clock, &now);
    return qint64(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

} // namespace

LineTime LineNow()
{
    return {Read(CLOCK_BOOTTIME), Read(CLOCK_REALTIME)};
}

qint64 MonotonicNow()
{
    return Read(CLOCK_BOOTTIME);
}
