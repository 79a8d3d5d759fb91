// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdSendLine.h"

#include "CommConfiguration.h"
#include "MdCommunication.h"
#include "PortDevices.h"
#include "RemoteAddress.h"
#include "SendLineSettings.h"

MdSendLine::MdSendLine(const SendLineParts &parts) : m_parts(parts)
{
    const auto *communication = &m_parts.communication;
    connect(communication, &MdCommunication::PortStatusChanged, this, &MdSendLine::Changed);
    connect(communication, &MdCommunication::RepeatsChanged, this, &MdSendLine::Changed);
}

SendAppendix MdSendLine::Appendix() const
{
    return SendAppendix::Restored(m_parts.settings.Appends);
}

void MdSendLine::SetAppendix(const SendAppendix &appendix)
{
    m_parts.settings.Appends = appendix.Stored();
}

QString MdSendLine::WhyClosed() const
{
    const MdCommunication &communication = m_parts.communication;
    if (communication.Running() && !communication.OnPorts())
        return QStringLiteral("Nothing is sent while a capture is replayed.");
    if (!m_parts.comm.MaySend())
        return QStringLiteral("Nothing is sent with the currently selected communication mode "
                              "(Receive Only).");
    if (!communication.Running())
        return QStringLiteral("Nothing is sent while no port is open.");
    const int port = m_parts.comm.PortA();
    if (ParseRemoteAddress(m_parts.devices.DeviceOf(port)).address.listens)
        return QStringLiteral("Nothing is sent: COM%1 only listens.").arg(port);
    return {};
}

QByteArray MdSendLine::Telegram(const QByteArray &typed) const
{
    const SendAppendix appendix = Appendix();
    return appendix.WhyNone(typed).isEmpty() ? typed + appendix.Of(typed) : QByteArray();
}

bool MdSendLine::Send(const QByteArray &typed)
{
    const QByteArray telegram = Telegram(typed);
    if (telegram.isEmpty() || !WhyClosed().isEmpty())
        return false;
    m_history.Add(typed);
    return !m_parts.communication.Send(telegram, {}).Failed();
}

bool MdSendLine::Repeat(const QByteArray &typed)
{
    const QByteArray telegram = Telegram(typed);
    if (telegram.isEmpty() || !WhyClosed().isEmpty())
        return false;
    EndRepeat();
    m_history.Add(typed);
    m_repeat = m_parts.communication.Repeat(
        {telegram, {}, {m_parts.settings.EveryMilliseconds, m_parts.settings.Count}});
    Q_EMIT Changed();
    return m_repeat != 0;
}

void MdSendLine::EndRepeat()
{
    if (const int repeat = std::exchange(m_repeat, 0))
        m_parts.communication.EndRepeat(repeat);
}

std::optional<RepeatState> MdSendLine::Repeating() const
{
    for (const RepeatState &state : m_parts.communication.Repeats()) {
        if (state.id == m_repeat)
            return state;
    }
    return {};
}
