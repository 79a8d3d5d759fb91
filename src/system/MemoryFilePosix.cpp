// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MemoryFile.h"

#include "DescriptorPosix.h"

#include <atomic>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

MemoryFile::MemoryFile(const QByteArray &bytes)
    : m_descriptor(::memfd_create("serimonde", MFD_CLOEXEC))
{
    static std::atomic<time_t> lastTime{0};
    const time_t time = ++lastTime;
    const timespec times[] = {{time, 0}, {time, 0}};
    if (m_descriptor < 0 ||
        ::write(m_descriptor, bytes.constData(), size_t(bytes.size())) != bytes.size() ||
        ::futimens(m_descriptor, &times[0]) != 0)
        m_state = SystemFailure();
}

MemoryFile::~MemoryFile()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

QString MemoryFile::Path() const
{
    return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor);
}
