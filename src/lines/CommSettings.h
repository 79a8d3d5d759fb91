// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineVocabulary.h"

#include <QString>
#include <QtGlobal>

/// How the ports are used. A stored value without a meaning acts as SendReceive.
enum class CommMode : qint32 {
    SendReceive = 0,            ///< talk to a device on channel 1
    MonitorReceiveOnly = 1,     ///< listen on channels 1 and 2, never transmit
    MonitorReceiveAndModify = 2 ///< listen on channels 1 and 2, answers go out on channel 1
};

/// The user's own port settings, as stored. The four line settings are indexes into the tables
/// of LineVocabulary; both channels share them.
struct CommSettings {
    qint32 CommType = 0;   ///< a CommMode value
    qint16 CommPortA = 1;  ///< COM number of channel 1, 1 to 255
    qint16 CommPortB = 2;  ///< COM number of channel 2, 1 to 255; unused in mode 0
    qint32 CommSpeed = 5;  ///< index, 5 is 9600 baud
    qint32 CommParity = 2; ///< index, 2 is None
    qint32 CommDataBits = 4;
    qint32 CommStopBits = 0;
    qint32 CommDeadSeconds = 10; ///< a connection without a word for so long counts as lost
    bool CommReopen = false;     ///< a device that went away is opened again when it is back

    bool operator==(const CommSettings &) const = default;
};

QString ModeCaption(CommMode mode);

/// The stored mode number as a mode.
CommMode ModeFromNumber(qint32 number);

/// Whether anything may be sent in a mode, by hand or as an answer.
constexpr bool MaySend(CommMode mode)
{
    return mode != CommMode::MonitorReceiveOnly;
}

/// The settings text for a port, such as "9600,N,8,1". A parity index outside the table leaves
/// its field out, so the port will refuse the text.
QString SettingsString(const CommSettings &settings);
