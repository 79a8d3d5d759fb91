// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineStatusWindow.h"

#include "CommConfiguration.h"
#include "PortDevices.h"
#include "RemoteAddress.h"
#include "SerialDevice.h"
#include "SerialPortControl.h"
#include "frmLineStatus.h"

#include <utility>

LineStatusWindow::LineStatusWindow(LineStatusWindowParts parts) : m_parts(std::move(parts)) {}

void LineStatusWindow::Show(QWidget &owner)
{
    if (!m_window) {
        const LineStatusSource source = {
            [this] { return Lines(); },
            [this](int channel, OwnLine line, bool on) { return Switch(channel, line, on); }};
        m_window = new frmLineStatus({source, m_parts.finder, SerialDevice::CanonicalName,
                                      m_parts.prompts, m_parts.lines.Priority()},
                                     &owner);
    }
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

QList<LineStatus> LineStatusWindow::Lines() const
{
    QList<LineStatus> lines = {StatusOf(m_parts.MSCommA, m_parts.comm.PortA())};
    if (m_parts.comm.TwoPorts())
        lines.append(StatusOf(m_parts.MSCommB, m_parts.comm.PortB()));
    return lines;
}

LineStatus LineStatusWindow::StatusOf(SerialPortControl &port, int comNumber) const
{
    LineStatus status;
    status.caption = QStringLiteral("COM%1").arg(comNumber);
    status.name = m_parts.devices.DeviceOf(comNumber);
    status.device = port.Device();
    status.settings = port.SettingsNote();
    if (status.settings.isEmpty())
        status.settings = m_parts.comm.PortSettings();
    if (IsRemoteAddress(status.device))
        status.description = port.Description();
    status.counts = port.Wire().Counts();
    if (port.PortOpen())
        status.state = status.counts.away ? PortState::Waiting : PortState::Open;
    return status;
}

Result LineStatusWindow::Switch(int channel, OwnLine line, bool on)
{
    Line &wire = (channel == 0 ? m_parts.MSCommA : m_parts.MSCommB).Wire();
    Result switched;
    m_parts.lines.Do([&] { switched = line == OwnLine::RTS ? wire.SetRTS(on) : wire.SetDTR(on); });
    return switched;
}
