// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SessionBus.h"

#include <QByteArray>
#include <QList>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>

#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{

constexpr timeval MostTimeToAnswer = {1, 0};

constexpr const char *AddressVariable = "DBUS_SESSION_BUS_ADDRESS";

/// Name of its local socket as the system takes it, an abstract one with its leading zero; empty
/// if the bus is to be reached by other means.
QByteArray SocketName()
{
    const QByteArray addresses = qgetenv(AddressVariable);
    if (addresses.isEmpty())
        return qgetenv("XDG_RUNTIME_DIR") + "/bus";
    const QByteArray first = addresses.split(';').first();
    const qsizetype keys = first.indexOf(':') + 1;
    if (first.first(keys) != "unix:")
        return {};
    for (const QByteArray &key : first.sliced(keys).split(',')) {
        QByteArray value = QByteArray::fromPercentEncoding(key.mid(key.indexOf('=') + 1));
        if (key.startsWith("path="))
            return value;
        if (key.startsWith("abstract="))
            return '\0' + value;
    }
    return {};
}

enum class Answer { Some, None, NotInTime };

Answer AnswerOf(int socket, const QByteArray &name)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (name.isEmpty() || name.size() >= qsizetype(sizeof address.sun_path))
        return Answer::None;
    std::copy(name.cbegin(), name.cend(), std::begin(address.sun_path));
    for (const int direction : {SO_SNDTIMEO, SO_RCVTIMEO})
        ::setsockopt(socket, SOL_SOCKET, direction, &MostTimeToAnswer, sizeof MostTimeToAnswer);

    const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()));
    // A conversation begins with a zero; whatever is said to such a question is an answer.
    static constexpr std::array<char, 7> Question = {'\0', 'A', 'U', 'T', 'H', '\r', '\n'};
    std::array<char, 64> answer;
    const bool done =
        ::connect(socket, reinterpret_cast<const sockaddr *>(&address), length) == 0 &&
        ::send(socket, Question.data(), Question.size(), MSG_NOSIGNAL) > 0 &&
        ::recv(socket, answer.data(), answer.size(), 0) >= 0;
    if (done)
        return Answer::Some;
    return errno == EAGAIN ? Answer::NotInTime : Answer::None;
}

} // namespace

SessionBus AskSessionBus()
{
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (socket < 0)
        return {};
    const Answer answer = AnswerOf(socket, SocketName());
    ::close(socket);
    if (answer != Answer::NotInTime)
        return {answer == Answer::Some, {}};
    qputenv(AddressVariable, "disabled:");
    return {false, Failure{QStringLiteral("The session's bus does not answer. Until the program is "
                                          "started again, assistive programs hear nothing of "
                                          "it.")}};
}
