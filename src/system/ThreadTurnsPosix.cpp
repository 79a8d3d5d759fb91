// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ThreadTurns.h"

#include <QtGlobal>

#include <sched.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{

constexpr quint64 Shortest = 100'000; ///< ns; the system has none beyond these two
constexpr quint64 Longest = 100'000'000;

/// What the system calls sched_attr; its header does not go with that of the library.
struct SchedulingAttributes {
    quint32 size = sizeof(SchedulingAttributes);
    quint32 policy = SCHED_OTHER;
    quint64 flags = 0;
    qint32 nice = 0;
    quint32 priority = 0;
    quint64 runtime = 0; ///< ns; of a turn, for ordinary threads
    quint64 deadline = 0;
    quint64 period = 0;
};

bool TakeTurns(quint64 length)
{
    SchedulingAttributes attributes;
    attributes.nice = ::getpriority(PRIO_PROCESS, id_t(::gettid()));
    attributes.runtime = length;
    return ::syscall(SYS_sched_setattr, 0, &attributes, 0U) == 0;
}

} // namespace

namespace ThreadTurns
{

bool TakeShort()
{
    return TakeTurns(Shortest);
}

bool TakeLong()
{
    return TakeTurns(Longest);
}

bool TakeUsual()
{
    return TakeTurns(0);
}

} // namespace ThreadTurns
