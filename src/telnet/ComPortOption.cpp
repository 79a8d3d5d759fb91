// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ComPortOption.h"

#include "TelnetReader.h"

#include <QtEndian>

#include <algorithm>

namespace
{

/// By their places in LineParity and LineStopBits.
constexpr std::array<quint8, 5> Parities = {3, 4, 1, 2, 5};
constexpr std::array<quint8, 3> StopSizes = {1, 3, 2};

template <typename Value, size_t Count>
bool TakeByte(Value &value, const std::array<quint8, Count> &bytes, quint8 byte)
{
    const auto place = std::find(bytes.begin(), bytes.end(), byte);
    if (place == bytes.end())
        return false;
    value = Value(place - bytes.begin());
    return true;
}

bool TakeBaudRate(LineSettings &settings, QByteArrayView value)
{
    const quint32 baud = value.size() == 4 ? qFromBigEndian<quint32>(value.data()) : 0;
    if (baud == 0 || baud > quint32(std::numeric_limits<qint32>::max()))
        return false;
    settings.baud = qint32(baud);
    return true;
}

bool TakeDataSize(LineSettings &settings, quint8 byte)
{
    const bool known = byte >= 5 && byte <= 8;
    if (known)
        settings.dataBits = byte;
    return known;
}

} // namespace

QByteArray ComPortOption::Command(quint8 command, QByteArrayView value)
{
    QByteArray words;
    for (const quint8 byte : {Telnet::IAC, Telnet::SB, Telnet::ComPort, command})
        words += char(byte);
    words += Telnet::Escaped(value);
    return words + char(Telnet::IAC) + char(Telnet::SE);
}

QByteArray ComPortOption::Commands(const LineSettings &settings)
{
    std::array<char, 4> baud = {};
    qToBigEndian(quint32(settings.baud), baud.data());
    return Command(SetBaudRate, QByteArrayView(baud.data(), baud.size())) +
           Command(SetDataSize, quint8(settings.dataBits)) +
           Command(SetParity, Parities[size_t(settings.parity)]) +
           Command(SetStopSize, StopSizes[size_t(settings.stopBits)]);
}

std::optional<ComPortOption::Setting> ComPortOption::Take(LineSettings &settings, quint8 command,
                                                          QByteArrayView value)
{
    const quint8 byte = value.size() == 1 ? quint8(value.front()) : 0;
    switch (command) {
    case SetBaudRate + ServerOffset:
        return TakeBaudRate(settings, value) ? std::optional(Setting::BaudRate) : std::nullopt;
    case SetDataSize + ServerOffset:
        return TakeDataSize(settings, byte) ? std::optional(Setting::DataSize) : std::nullopt;
    case SetParity + ServerOffset:
        return TakeByte(settings.parity, Parities, byte) ? std::optional(Setting::Parity)
                                                         : std::nullopt;
    case SetStopSize + ServerOffset:
        return TakeByte(settings.stopBits, StopSizes, byte) ? std::optional(Setting::StopSize)
                                                            : std::nullopt;
    default:
        return std::nullopt;
    }
}

ModemLines ComPortOption::LinesOf(quint8 modemState)
{
    ModemLines lines;
    lines.CTS = (modemState & 0x10) != 0;
    lines.DSR = (modemState & 0x20) != 0;
    lines.RI = (modemState & 0x40) != 0;
    lines.DCD = (modemState & 0x80) != 0;
    return lines;
}
