// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineRepeats.h"
#include "SendAppendix.h"
#include "SendHistory.h"

#include <QObject>

class MdCommunication;
class PortDevices;
struct CommConfiguration;
struct SendLineSettings;

/// What the send line works with; all of it lives longer.
struct SendLineParts {
    MdCommunication &communication;
    const CommConfiguration &comm;
    const PortDevices &devices;
    SendLineSettings &settings;
};

/// What is sent by hand without a sequence of the project: whether it may be, what is appended,
/// what was sent before, and what of it is repeated. It goes the way of all that is sent by hand.
class MdSendLine final : public QObject
{
    Q_OBJECT

  public:
    explicit MdSendLine(const SendLineParts &parts);

    SendLineSettings &Settings() { return m_parts.settings; }
    SendAppendix Appendix() const;
    void SetAppendix(const SendAppendix &appendix);

    /// Why nothing can be sent now, a whole sentence; empty if it can.
    QString WhyClosed() const;

    /// With what is appended; empty if that cannot be made.
    QByteArray Telegram(const QByteArray &typed) const;
    /// False if nothing was sent: there is nothing, or what is to be appended cannot be made, or
    /// the line refuses it, which the user has been told then.
    bool Send(const QByteArray &typed);
    /// Sends it again and again, in the place of what is repeated so far.
    bool Repeat(const QByteArray &typed);
    void EndRepeat();
    std::optional<RepeatState> Repeating() const;

    SendHistory &History() { return m_history; }

  Q_SIGNALS:
    /// What may be sent or is repeated has changed.
    void Changed();

  private:
    SendLineParts m_parts;
    SendHistory m_history;
    int m_repeat = 0; ///< 0 for none
};
