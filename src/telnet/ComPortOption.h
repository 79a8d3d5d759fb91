// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Line.h"
#include "LineSettings.h"

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <optional>

/// The telnet option by which the settings and signals of a serial line travel (RFC 2217).
namespace ComPortOption
{

/// As a client sends them; a server answers, or tells, with ServerOffset more.
constexpr quint8 Signature = 0;
constexpr quint8 SetBaudRate = 1;
constexpr quint8 SetDataSize = 2;
constexpr quint8 SetParity = 3;
constexpr quint8 SetStopSize = 4;
constexpr quint8 SetControl = 5;
constexpr quint8 NotifyLineState = 6;
constexpr quint8 NotifyModemState = 7;
constexpr quint8 FlowSuspend = 8;
constexpr quint8 FlowResume = 9;
constexpr quint8 SetLineStateMask = 10;
constexpr quint8 SetModemStateMask = 11;
constexpr quint8 ServerOffset = 100;

/// The four settings, each by a command of its own, in this order.
enum class Setting { BaudRate, DataSize, Parity, StopSize };
constexpr size_t SettingCount = 4;

/// Values of SetControl.
enum class Control : quint8 {
    NoFlowControl = 1,
    BreakOn = 5,
    BreakOff = 6,
    DTROn = 8,
    DTROff = 9,
    RTSOn = 11,
    RTSOff = 12
};

/// Bits of NotifyLineState.
constexpr quint8 Overrun = 0x02;
constexpr quint8 ParityError = 0x04;
constexpr quint8 FramingError = 0x08;
constexpr quint8 Break = 0x10;

/// A command as it travels.
QByteArray Command(quint8 command, QByteArrayView value = {});
inline QByteArray Command(quint8 command, quint8 value)
{
    const char byte = char(value);
    return Command(command, QByteArrayView(&byte, 1));
}

/// Asks for all four settings.
QByteArray Commands(const LineSettings &settings);

/// Takes what a server says of one of them; empty if it makes no sense.
std::optional<Setting> Take(LineSettings &settings, quint8 command, QByteArrayView value);

ModemLines LinesOf(quint8 modemState);

} // namespace ComPortOption
