// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "UnfinishedFilePosix.h"

#include "FileName.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>

#include <cerrno>
#include <functional>
#include <thread>

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr std::chrono::milliseconds RetryPause{5};

Failure Held()
{
    return {QStringLiteral("Another program is saving it"), FileAlreadyOpen};
}

Failure InTheWay(const QByteArray &name)
{
    const Failure why = SystemFailure();
    return {QStringLiteral("%1 is in the way: %2")
                .arg(FileName::Shown(FileName::Decode(name)), why.cause)};
}

/// Repeats an attempt to get the name while it fails with EEXIST, at least once.
Result Claim(const QByteArray &name, std::chrono::milliseconds patience,
             const std::function<bool()> &attempt)
{
    const QDeadlineTimer deadline(patience);
    for (bool last = false; !attempt(); last = deadline.hasExpired()) {
        if (errno != EEXIST)
            return SystemFailure();
        Result removed = UnfinishedFile::RemoveUnheld(name);
        if (removed.Failed() && removed.Number() != FileAlreadyOpen)
            return removed;
        if (last)
            return Held();
        if (removed.Failed())
            std::this_thread::sleep_for(RetryPause);
    }
    return {};
}

} // namespace

namespace UnfinishedFile
{

QByteArray NameFor(const QByteArray &target)
{
    const QByteArray ending = ".saving";
    const qsizetype start = target.lastIndexOf('/') + 1;
    QByteArray name = target.sliced(start);
    if (name.size() + 1 + ending.size() > NAME_MAX)
        name = QCryptographicHash::hash(name, QCryptographicHash::Sha1).toHex();
    return target.first(start) + '.' + name + ending;
}

Descriptor Create(const QByteArray &name, std::chrono::milliseconds patience, Result &result)
{
    Descriptor file;
    result = Claim(name, patience, [&file, &name] {
        file = Descriptor(name, O_WRONLY | O_CREAT | O_EXCL);
        if (!file.IsOpen())
            return false;
        // Before the lock another program may have taken the new file for one left behind. Where
        // the system has no locks, the new name alone must do.
        const bool taken = !Lock(file) && errno == EWOULDBLOCK;
        const bool isOurs = !taken && IsNameOf(AT_FDCWD, name, file);
        errno = EEXIST; // whatever that has told: it is to be tried again
        return isOurs;
    });
    return result.Failed() ? Descriptor() : std::move(file);
}

Result Name(const Descriptor &nameless, const QByteArray &name, std::chrono::milliseconds patience)
{
    Lock(nameless);
    const QByteArray open = "/proc/self/fd/" + QByteArray::number(nameless.Number());
    return Claim(name, patience, [&open, &name] {
        return ::linkat(AT_FDCWD, open.constData(), AT_FDCWD, name.constData(),
                        AT_SYMLINK_FOLLOW) == 0;
    });
}

Result RemoveUnheld(const QByteArray &name)
{
    const Descriptor left(name, O_RDWR | O_NOFOLLOW);
    if (!left.IsOpen())
        return errno == ENOENT ? Result() : InTheWay(name);
    struct stat status = {};
    if (::fstat(left.Number(), &status) == 0 && !S_ISREG(status.st_mode)) {
        errno = EEXIST;
        return InTheWay(name);
    }
    if (!Lock(left))
        return errno == EWOULDBLOCK ? Held() : InTheWay(name);
    if (IsNameOf(AT_FDCWD, name, left) && ::unlink(name.constData()) != 0)
        return InTheWay(name);
    return {};
}

} // namespace UnfinishedFile
