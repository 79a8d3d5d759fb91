// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RemoteOpening.h"

#include "LineLoop.h"
#include "SerialPortControl.h"
#include "TlsStream.h"

#include <array>
#include <cerrno>
#include <condition_variable>
#include <mutex>

#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>

namespace
{

/// How long a no may go unheard.
constexpr std::chrono::milliseconds Slice{20};

/// A device that talks on while nobody has agreed upon anything.
constexpr qsizetype MostEarlyBytes = 1024 * 1024;

} // namespace

/// Shared with a thread that the system may hold up for long.
struct RemoteOpening::Lookup {
    struct Answer {
        std::mutex lock;
        std::condition_variable changed;
        bool done = false;
        int error = 0;
        addrinfo *first = nullptr;

        Answer() = default;
        ~Answer()
        {
            if (first)
                ::freeaddrinfo(first);
        }
        Q_DISABLE_COPY_MOVE(Answer)
    };
    std::shared_ptr<Answer> answer = std::make_shared<Answer>();
};

RemoteOpening::RemoteOpening(const RemoteRequest &request)
    : m_request(request), m_peer(PeerText(request.address))
{
}

void RemoteOpening::Open(const Wanted &wanted)
{
    BlockBrokenPipes();
    m_wanted = wanted;
    m_deadline = QDeadlineTimer(m_request.mostTime);
    m_state = OpenAll();
    if (m_state.Failed())
        m_link = {};
}

Result RemoteOpening::OpenAll()
{
    constexpr int LeastDataBits = 5;
    const bool server = m_request.address.kind == RemoteAddress::Kind::SerialServer;
    if (server && !m_request.address.listens && m_request.settings.dataBits < LeastDataBits)
        return Failure{QStringLiteral("%1 cannot be asked for %2: serial port servers know 5 to 8 "
                                      "data bits")
                           .arg(m_peer, LineSettingsText(m_request.settings)),
                       RefusedLineSettings};
    Lookup found;
    m_stage = RemoteFacts::Stage::Name;
    if (Result done = LookUp(found); done.Failed())
        return done;
    NoteAddresses(found);
    m_stage = RemoteFacts::Stage::Connection;
    if (Result done = Connect(found); done.Failed())
        return done;
    m_stage = RemoteFacts::Stage::Security;
    if (Result done = Secure(); done.Failed())
        return done;
    m_stage = RemoteFacts::Stage::Conversation;
    if (Result done = server ? Converse() : Result(); done.Failed())
        return done;
    m_stage = RemoteFacts::Stage::Done;
    return {};
}

void RemoteOpening::NoteAddresses(const Lookup &found)
{
    for (const addrinfo *each = found.answer->first; each; each = each->ai_next) {
        std::array<char, NI_MAXHOST> number = {};
        if (::getnameinfo(each->ai_addr, each->ai_addrlen, number.data(), number.size(), nullptr, 0,
                          NI_NUMERICHOST) == 0)
            m_addresses.append(QString::fromLatin1(number.data()));
    }
    m_addresses.removeDuplicates();
}

Result RemoteOpening::LookUp(Lookup &found)
{
    const std::shared_ptr<Lookup::Answer> answer = found.answer;
    LineLoop::RunBeside([answer, host = m_request.address.host.toUtf8(),
                         port = QByteArray::number(m_request.address.port)] {
        addrinfo hints = {};
        hints.ai_socktype = SOCK_STREAM;
        hints.ai_flags = AI_NUMERICSERV;
        addrinfo *first = nullptr;
        const int error = ::getaddrinfo(host.constData(), port.constData(), &hints, &first);
        const std::lock_guard guard(answer->lock);
        answer->first = error == 0 ? first : nullptr;
        answer->error = error;
        answer->done = true;
        answer->changed.notify_all();
    });
    std::unique_lock guard(answer->lock);
    while (!answer->done) {
        answer->changed.wait_for(guard, Slice);
        if (answer->done)
            break;
        if (!m_wanted())
            return Given(Waited::Unwanted, {});
        if (m_deadline.hasExpired())
            return Given(Waited::Late, QStringLiteral("Nobody has told within %1 which machine %2 "
                                                      "is")
                                           .arg(MostTimeText(), m_request.address.host));
    }
    if (answer->error == 0)
        return {};
    return Failure{
        QStringLiteral("There is no machine %1: %2")
            .arg(m_request.address.host, QString::fromLocal8Bit(::gai_strerror(answer->error)))};
}

/// One after the other, each with an equal share of the time that is left.
Result RemoteOpening::Connect(const Lookup &found)
{
    int left = 0;
    for (const addrinfo *each = found.answer->first; each; each = each->ai_next)
        ++left;
    Result latest;
    for (const addrinfo *each = found.answer->first; each; each = each->ai_next, --left) {
        Descriptor socket(::socket(each->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        const QDeadlineTimer until(m_deadline.remainingTime() / left);
        const bool asked =
            socket.IsOpen() && (::connect(socket.Number(), each->ai_addr, each->ai_addrlen) == 0 ||
                                errno == EINPROGRESS);
        latest = asked ? ConnectTo(socket, until)
                       : Result(Failure{QStringLiteral("%1 cannot be reached: %2")
                                            .arg(m_peer, qt_error_string(errno))});
        if (!latest.Failed()) {
            m_socket = std::move(socket);
            return {};
        }
        if (latest.Number() == OpeningCancelled)
            break;
    }
    return latest;
}

Result RemoteOpening::ConnectTo(Descriptor &socket, QDeadlineTimer until) const
{
    Result waited = Given(
        WaitFor(socket.Number(), POLLOUT, until),
        QStringLiteral("%1 cannot be reached: no answer within %2").arg(m_peer, MostTimeText()));
    if (waited.Failed())
        return waited;
    int error = 0;
    socklen_t size = sizeof error;
    ::getsockopt(socket.Number(), SOL_SOCKET, SO_ERROR, &error, &size);
    if (error == 0)
        return {};
    return Failure{QStringLiteral("%1 cannot be reached: %2").arg(m_peer, qt_error_string(error))};
}

Result RemoteOpening::Secure()
{
    if (!m_request.address.secure) {
        m_link.stream = std::make_unique<RemoteStream>(std::move(m_socket), m_peer);
        return m_link.stream->Prepare(m_request.deadSeconds);
    }
    auto tls = std::make_unique<TlsStream>(std::move(m_socket), m_request.address);
    if (Result prepared = tls->Prepare(m_request.deadSeconds); prepared.Failed())
        return prepared;
    if (Result begun = tls->Begin(); begun.Failed())
        return begun;
    for (TlsSession::Step step = tls->Agree(); step != TlsSession::Step::Done;
         step = tls->Agree()) {
        if (step == TlsSession::Step::Failed)
            return tls->Agreement();
        const short event = step == TlsSession::Step::WantsToRead ? POLLIN : POLLOUT;
        Result waited = Given(
            WaitFor(tls->Handle(), event, m_deadline),
            QStringLiteral("%1 did not agree upon TLS within %2").arg(m_peer, MostTimeText()));
        if (waited.Failed())
            return waited;
    }
    m_link.stream = std::move(tls);
    return {};
}

Result RemoteOpening::Converse()
{
    m_link.client = std::make_unique<ComPortClient>(
        ComPortRequest{m_request.settings, m_request.requestToSend, m_request.address.listens});
    while (m_link.client->Verdict() == ComPortClient::Outcome::Opening)
        if (Result done = ConverseOnce(); done.Failed())
            return done;
    if (m_link.client->Verdict() != ComPortClient::Outcome::Ready)
        return Refusal();
    if (m_request.asksName)
        AskName();
    return SendOutgoing();
}

/// Not every server has one.
void RemoteOpening::AskName()
{
    constexpr std::chrono::milliseconds MostTimeForAName{500};
    m_deadline = QDeadlineTimer(MostTimeForAName);
    while (m_link.client->ServerName().isEmpty() && !ConverseOnce().Failed()) {
    }
}

Result RemoteOpening::ConverseOnce()
{
    if (Result sent = SendOutgoing(); sent.Failed())
        return sent;
    const Waited waited = WaitFor(m_link.stream->Handle(), POLLIN, m_deadline);
    if (waited == Waited::Late)
        return Silence();
    if (waited == Waited::Unwanted)
        return Given(waited, {});
    std::array<char, 16 * 1024> part;
    const qsizetype count = m_link.stream->Receive(part.data(), part.size());
    if (count < 0)
        return Failure{m_link.stream->End().Cause() + LastWords()};
    if (!Hear(QByteArrayView(part.data(), count)))
        return Failure{QStringLiteral("%1 speaks without end and does not answer as a serial port "
                                      "server")
                           .arg(m_peer)};
    return {};
}

Result RemoteOpening::SendOutgoing()
{
    for (QByteArray words = m_link.client->TakeOutgoing(); !words.isEmpty();) {
        const qsizetype taken = m_link.stream->Transmit(words.constData(), words.size());
        if (taken < 0)
            return m_link.stream->End();
        words.remove(0, taken);
        if (words.isEmpty())
            break;
        Result waited = Given(WaitFor(m_link.stream->Handle(), POLLOUT, m_deadline),
                              QStringLiteral("%1 does not take anything").arg(m_peer));
        if (waited.Failed())
            return waited;
    }
    return {};
}

/// False if it is too much.
bool RemoteOpening::Hear(QByteArrayView bytes)
{
    m_link.client->Feed(bytes);
    while (const auto piece = m_link.client->Next())
        m_link.early += piece->bytes;
    return m_link.early.size() <= MostEarlyBytes;
}

Result RemoteOpening::Refusal() const
{
    const ComPortClient &client = *m_link.client;
    switch (client.Verdict()) {
    case ComPortClient::Outcome::OtherSettings:
        return Failure{QStringLiteral("%1 was asked for %2 and does %3")
                           .arg(m_peer, LineSettingsText(m_request.settings),
                                LineSettingsText(client.Settings())),
                       RefusedLineSettings};
    case ComPortClient::Outcome::NoBinary:
        return Failure{QStringLiteral("%1 refuses to pass all bytes as they are").arg(m_peer)};
    default:
        return Failure{
            QStringLiteral("%1 refuses to speak of serial lines (RFC 2217)").arg(m_peer)};
    }
}

Result RemoteOpening::Silence() const
{
    constexpr std::array Names = {"the baud rate", "the data bits", "the parity", "the stop bits"};
    const ComPortClient &client = *m_link.client;
    QStringList missing;
    for (size_t i = 0; i < Names.size(); ++i)
        if (!client.HasAnswered(ComPortOption::Setting(i)))
            missing << QString::fromLatin1(Names[i]);
    if (!client.IsUnderstood())
        return Failure{QStringLiteral("%1 is connected, but does not answer as a serial port "
                                      "server (RFC 2217); one that passes bytes alone is %2")
                           .arg(m_peer, m_request.address.secure ? QStringLiteral("tls://")
                                                                 : QStringLiteral("tcp://"))};
    if (missing.size() == qsizetype(Names.size()))
        return Failure{
            QStringLiteral("%1 does not answer when it is asked for settings").arg(m_peer)};
    return Failure{QStringLiteral("%1 was asked for %2 and does not confirm %3")
                       .arg(m_peer, LineSettingsText(m_request.settings),
                            missing.join(QStringLiteral(" and "))),
                   RefusedLineSettings};
}

QString RemoteOpening::MostTimeText() const
{
    constexpr double Milliseconds = 1000;
    return QStringLiteral("%1 seconds").arg(double(m_request.mostTime.count()) / Milliseconds);
}

RemoteOpening::Waited RemoteOpening::WaitFor(int handle, short events, QDeadlineTimer until) const
{
    for (;;) {
        if (!m_wanted())
            return Waited::Unwanted;
        const qint64 left = std::min<qint64>(until.remainingTime(), Slice.count());
        pollfd waited = {handle, events, 0};
        if (::poll(&waited, 1, int(std::max<qint64>(left, 0))) > 0)
            return m_deadline.hasExpired() ? Waited::Late : Waited::Ready;
        if (until.hasExpired())
            return Waited::Late;
    }
}

Result RemoteOpening::Given(Waited waited, const QString &late) const
{
    if (waited == Waited::Ready)
        return {};
    if (waited == Waited::Late)
        return Failure{late};
    return Failure{QStringLiteral("The opening of %1 was cancelled").arg(m_peer), OpeningCancelled};
}

/// Servers say why before they close: "port in use", for one.
QString RemoteOpening::LastWords() const
{
    constexpr qsizetype MostLetters = 200;
    QString words = QString::fromLatin1(m_link.early.left(MostLetters));
    for (QChar &letter : words)
        letter = letter.isPrint() ? letter : QChar(u' ');
    words = words.simplified();
    return words.isEmpty() ? words : QStringLiteral("; its last words: \"%1\"").arg(words);
}
