// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineJudge.h"
#include "LineRepeats.h"
#include "TrafficSource.h"

#include <array>
#include <functional>

class QObject;
class SerialPortControl;
class UserPrompts;
struct CommConfiguration;

/// What the ports work with; all of it lives longer than PortTraffic.
struct PortTrafficParts {
    const CommConfiguration &comm;
    UserPrompts &prompts;
    SerialPortControl &MSCommA; ///< channel 1
    SerialPortControl &MSCommB; ///< channel 2
    LineThread &lines;          ///< that serves both
    const WatchBoard &board;
    TrafficStream &stream;
    std::function<bool()> hasRoom; ///< of the consumers; asked on the lines' thread
    QObject &window;               ///< whose thread and events the calls below come with
    /// A device went away for good; a message for the user.
    std::function<void(const QString &text)> disconnected;
    std::function<void()> statusChanged;
    /// A repeat has ended by itself.
    std::function<void()> repeatEnded;
    bool hasOptions = false; ///< the user can assign devices in a dialog
};

/// The ports of the mode in force: opens and closes them, and sends. What the lines say is judged
/// and answered on the lines' thread, by LineJudge.
class PortTraffic final : public TrafficSource
{
  public:
    explicit PortTraffic(PortTrafficParts parts);
    ~PortTraffic() override;
    Q_DISABLE_COPY_MOVE(PortTraffic)

    bool Open() override;
    TrafficSession Session() const override;
    /// The lines begin at one moment.
    void Begin() override;
    /// Both lines stop at one moment; what they said until then is judged and answered.
    void End() override;
    bool Close() override;
    void Resume() override;
    Result Send(const QByteArray &bytes, const QByteArray &name) override;
    /// As it is now, whatever has led here: devices may go and come back faster than the window
    /// hears of it.
    QString Status() const override;

    /// What is sent again and again, until the ports are closed.
    LineRepeats &Repeats() { return m_repeats; }
    const LineRepeats &Repeats() const { return m_repeats; }

  private:
    enum class Channel { A, B };

    void Later(std::function<void()> work) const;
    LineJudge::Reports JudgeReports();
    bool ConfigurePort(SerialPortControl &port, Channel channel);
    static bool ClosePort(SerialPortControl &port);
    void Read();
    void TellOpenOrClosed(TrafficEvent::Kind kind, Channel channel);

    void OnGone(int channel, const QString &cause);
    void TellNotSent(int channel, const QString &cause);
    void TellThrownAway(Channel channel);

    QList<Channel> ChannelsOfMode() const;
    SerialPortControl &PortOf(Channel channel) const;
    int PortNumber(Channel channel) const;
    QString PortName(Channel channel) const;

    PortTrafficParts m_parts;
    LineJudge m_judge;
    LineRepeats m_repeats;
    std::array<bool, 2> m_told{}; ///< by channel: that something could not be sent
};
