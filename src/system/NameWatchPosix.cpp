// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "NameWatch.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace
{

/// What happens in a row is one change, such as the making of a device and the setting of its
/// rights.
constexpr qint64 ChangeMilliseconds = 5;

/// Links that lead in a circle end somewhere, too.
constexpr int MostLinks = 8;

/// A folder that is missing makes itself known in the one that it will be in.
QString ExistingFolderOf(const QString &path)
{
    QString folder = QFileInfo(path).path();
    while (!QFileInfo::exists(folder) && folder != QFileInfo(folder).path())
        folder = QFileInfo(folder).path();
    return folder;
}

} // namespace

NameWatch::NameWatch()
    : m_changes(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
      m_end(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))
{
}

NameWatch::~NameWatch()
{
    for (const int descriptor : {m_changes, m_end})
        ::close(descriptor);
}

/// Folders that are watched already stay so; one that no name is in any more costs a look at most.
void NameWatch::Watch(const QStringList &names)
{
    constexpr auto Changes = IN_CREATE | IN_DELETE | IN_MOVE | IN_ATTRIB | IN_DELETE_SELF;
    for (QString name : names) {
        for (int links = 0; links < MostLinks && !name.isEmpty(); ++links) {
            ::inotify_add_watch(m_changes, QFile::encodeName(ExistingFolderOf(name)).constData(),
                                Changes);
            name = QFileInfo(name).symLinkTarget();
        }
    }
}

bool NameWatch::Wait(qint64 milliseconds)
{
    std::array<pollfd, 2> waited = {{{m_end, POLLIN, 0}, {m_changes, POLLIN, 0}}};
    const qint64 quiet = m_changed ? std::min(milliseconds, ChangeMilliseconds) : 0;
    if (quiet > 0 && ::poll(waited.data(), 1, int(quiet)) > 0)
        return true;
    ::poll(waited.data(), waited.size(), int(milliseconds - quiet));
    m_changed = false;
    std::array<char, 4096> changes;
    while (::read(m_changes, changes.data(), changes.size()) > 0)
        m_changed = true;
    return m_changed;
}

void NameWatch::End()
{
    ::eventfd_write(m_end, 1);
}
