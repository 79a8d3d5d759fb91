// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QtGlobal>

/// How the ports are used. A stored value without a meaning acts as SendReceive.
enum class CommMode : qint32 {
    SendReceive = 0,            ///< talk to a device on channel 1
    MonitorReceiveOnly = 1,     ///< listen on channels 1 and 2, never transmit
    MonitorReceiveAndModify = 2 ///< listen on channels 1 and 2, answers go out on channel 1
};

/// The user's own port settings, as stored. The four line settings are indexes into the value
/// tables below; both channels share them.
struct CommSettings {
    qint32 CommType = 0;   ///< a CommMode value
    qint16 CommPortA = 1;  ///< COM number of channel 1, 1 to 255
    qint16 CommPortB = 2;  ///< COM number of channel 2, 1 to 255; unused in mode 0
    qint32 CommSpeed = 5;  ///< index, 5 is 9600 baud
    qint32 CommParity = 2; ///< index, 2 is None
    qint32 CommDataBits = 4;
    qint32 CommStopBits = 0;

    bool operator==(const CommSettings &) const = default;
};

/// Table sizes, for lists that show the tables in index order.
constexpr int SpeedCount = 15;
constexpr int ParityCount = 5;
constexpr int DataBitsCount = 5;
constexpr int StopBitsCount = 3;

/// Table look-ups; an index outside the table gives the empty text.
QString SpeedText(qint32 index);
QString ParityText(qint32 index);
QString DataBitsText(qint32 index);
QString StopBitsText(qint32 index);
QString ModeCaption(CommMode mode);

/// The stored mode number as a mode.
CommMode ModeFromNumber(qint32 number);

/// The settings text for a port, such as "9600,N,8,1". A parity index outside the table leaves
/// its field out, so the port will refuse the text.
QString SettingsString(const CommSettings &settings);
