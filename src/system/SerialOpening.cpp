// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SerialOpening.h"

#include "SerialPortControl.h"

#include <utility>

SerialOpening::SerialOpening(const LineRequest &request)
    : m_device(request.device), m_state(Open(request))
{
}

SerialOpening::~SerialOpening()
{
    if (m_handle == SerialDevice::NoHandle)
        return;
    SerialDevice::RestoreLineState(m_handle, m_lineBefore);
    SerialDevice::Close(m_handle);
}

Result SerialOpening::Open(const LineRequest &request)
{
    using SerialDevice::Access;
    SerialDevice::Probe probe(request.device, request.alias,
                              request.listensOnly ? Access::ReadOnly : Access::ReadAndWrite);
    if (probe.State().Failed())
        return probe.State();
    if (!request.listensOnly)
        m_lock = std::make_unique<SerialDevice::Lock>(request.device);
    if (m_lock && !m_lock->Held())
        return SerialDevice::LockFailure(request.device, request.alias);

    // Bytes that came in before the opening are left to the system: it keeps or drops them.
    m_lineBefore = SerialDevice::LineState(probe.Handle());
    m_handle = probe.Release();
    return Configure(request);
}

Result SerialOpening::Configure(const LineRequest &request)
{
    // Whether this succeeds says little; a device may take a setting and do something else.
    SerialDevice::ApplySettings(m_handle, request.settings);
    m_marks = {SerialDevice::MarksDamage(m_handle), SerialDevice::UnreadBytes(m_handle),
               SerialDevice::ReadCounters(m_handle)};
    const auto line = SerialDevice::ReadLineSettings(m_handle, request.settings.baud);
    if (!line)
        return SerialDevice::CheckPresence(m_handle, request.device);
    if (*line != request.settings)
        return Failure{
            QStringLiteral("%1 was asked for %2 and does %3")
                .arg(request.device, LineSettingsText(request.settings), LineSettingsText(*line)),
            RefusedLineSettings};

    const Result switched = SerialDevice::SetRequestToSend(m_handle, request.requestToSend);
    if (switched.Failed())
        return Failure{QStringLiteral("The request-to-send line of %1 cannot be set: %2")
                           .arg(request.device, switched.Cause())};
    SerialDevice::SetLowLatency(m_handle);
    return {};
}

SerialDevice::Handle SerialOpening::TakeHandle()
{
    return std::exchange(m_handle, SerialDevice::NoHandle);
}
