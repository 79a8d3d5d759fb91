// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineCapture.h"

#include "CaptureThread.h"
#include "ListeningLines.h"
#include "NamedPipe.h"
#include "ProgramInfo.h"
#include "TerminationWatch.h"
#include "UserLines.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>
#include <utility>

namespace
{

/// Wireshark opens its end a moment after it has started this program. Should it never do so, the
/// device is not kept from others.
constexpr int MillisecondsBetweenLooks = 10;
constexpr int MostMillisecondsOfLooking = 30000;

/// A failure is the reader's leaving, which ends the capture.
class PipeSink final : public CaptureSink
{
  public:
    explicit PipeSink(std::shared_ptr<NamedPipe> pipe) : m_pipe(std::move(pipe)) {}

    Result BeginSection(QByteArrayView head) override { return m_pipe->Write(head); }
    Result Write(QByteArrayView packets) override { return m_pipe->Write(packets); }
    void Finish() override {}

  private:
    const std::shared_ptr<NamedPipe> m_pipe; ///< a thread may wait for its reader until the end
};

/// One capture, from the opening of the devices to their closing.
class Capture final
{
  public:
    Capture(const PortDevices &devices, std::shared_ptr<NamedPipe> pipe);

    Result Run(const ListeningLines::Request &request);

  private:
    void LookForReader();
    void Begin();
    void Quit(const Result &result);

    const std::shared_ptr<NamedPipe> m_pipe;
    CaptureThread m_thread;
    ListeningLines m_lines;
    const TerminationWatch m_termination;
    QEventLoop m_events;
    QTimer m_look;
    QElapsedTimer m_looking;
    std::unique_ptr<QSocketNotifier> m_leaving; ///< of the reader
    Result m_result;
};

Capture::Capture(const PortDevices &devices, std::shared_ptr<NamedPipe> pipe)
    : m_pipe(std::move(pipe)),
      m_thread(std::make_unique<PipeSink>(m_pipe),
               QStringLiteral("Serimonde ") + ProgramInfo::Version()),
      m_lines(devices)
{
    QObject::connect(&m_termination, &TerminationWatch::Terminating, &m_events,
                     [this] { Quit({}); });
    QObject::connect(&m_lines, &ListeningLines::Gone, &m_events,
                     [this](const QString &cause) { Quit(Failure{cause}); });
    m_look.callOnTimeout(&m_events, [this] { LookForReader(); });
}

Result Capture::Run(const ListeningLines::Request &request)
{
    if (Result opened = m_lines.Open(request); opened.Failed())
        return opened;
    m_look.start(MillisecondsBetweenLooks);
    m_looking.start();
    m_events.exec();
    m_lines.End();
    return m_result;
}

/// The first cause is the one that counts.
void Capture::Quit(const Result &result)
{
    if (!m_events.isRunning())
        return;
    m_result = result;
    m_events.quit();
}

void Capture::LookForReader()
{
    const Result opened = m_pipe->Open();
    if (opened.Failed() && opened.Number() == NamedPipe::NoReader &&
        !m_looking.hasExpired(MostMillisecondsOfLooking))
        return;
    m_look.stop();
    if (opened.Failed())
        Quit(Failure{QStringLiteral("Nobody reads the pipe: %1").arg(opened.Cause())});
    else
        Begin();
}

/// That nobody reads any more is an exception of the pipe's, whether something is written or not.
void Capture::Begin()
{
    m_leaving = std::make_unique<QSocketNotifier>(m_pipe->Descriptor(), QSocketNotifier::Exception);
    QObject::connect(m_leaving.get(), &QSocketNotifier::activated, &m_events, [this] {
        m_leaving->setEnabled(false);
        Quit({});
    });
    m_lines.Begin(m_thread);
}

ListeningLines::Request RequestOf(const ExtcapArguments &arguments, const CommConfiguration &comm)
{
    return {ExtcapLineNumbers(arguments.line),
            arguments.settings.isEmpty() ? comm.PortSettings() : arguments.settings,
            arguments.requestToSend, arguments.reconnect.value_or(comm.Reopens())};
}

PortDevices DevicesOf(const ExtcapArguments &arguments, const UserLines &user)
{
    PortDevices devices = user.devices;
    const QList<int> comNumbers = ExtcapLineNumbers(arguments.line);
    for (qsizetype channel = 0; channel < comNumbers.size(); ++channel) {
        if (const QString &device = arguments.devices[size_t(channel)]; !device.isEmpty())
            devices.AssignForRun(comNumbers[channel], device);
    }
    return devices;
}

} // namespace

Result CaptureLines(const ExtcapArguments &arguments, const UserLines &user)
{
    if (!arguments.filter.isEmpty())
        return Failure{NoFilters()};
    if (user.state.Failed())
        return Failure{QStringLiteral("The settings of Serimonde could not be read. ") +
                       user.state.Cause()};
    const auto pipe = std::make_shared<NamedPipe>(arguments.fifo);
    if (pipe->State().Failed())
        return Failure{QStringLiteral("--fifo %1: %2").arg(arguments.fifo, pipe->State().Cause())};
    const PortDevices devices = DevicesOf(arguments, user);
    return Capture(devices, pipe).Run(RequestOf(arguments, user.comm));
}

QString NoFilters()
{
    return QStringLiteral("Serial lines have no capture filters; use a display filter");
}
