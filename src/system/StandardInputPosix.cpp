// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "StandardInput.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <utility>

#include <unistd.h>

StandardInput::StandardInput() = default;
StandardInput::~StandardInput() = default;

void StandardInput::Start()
{
    m_notifier = std::make_unique<QSocketNotifier>(STDIN_FILENO, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &StandardInput::Read);
}

void StandardInput::SetReading(bool on)
{
    if (m_notifier)
        m_notifier->setEnabled(on);
}

/// The notifier says that a read will not wait.
void StandardInput::Read()
{
    std::array<char, 65536> part;
    const ssize_t count = ::read(STDIN_FILENO, part.data(), part.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (count <= 0) {
        m_notifier->setEnabled(false);
        if (!m_line.isEmpty() || m_tooLong)
            EndLine();
        Q_EMIT Ended();
        return;
    }
    QByteArrayView rest(part.data(), count);
    while (!rest.isEmpty()) {
        const qsizetype end = rest.indexOf('\n');
        const QByteArrayView piece = end < 0 ? rest : rest.first(end);
        m_tooLong = m_tooLong || m_line.size() + piece.size() > MostBytes;
        if (m_tooLong)
            m_line.clear();
        else
            m_line += piece;
        if (end < 0)
            return;
        rest = rest.sliced(end + 1);
        EndLine();
    }
}

void StandardInput::EndLine()
{
    const QByteArray line = std::exchange(m_line, {});
    if (std::exchange(m_tooLong, false))
        Q_EMIT LineTooLong();
    else
        Q_EMIT LineRead(line);
}
