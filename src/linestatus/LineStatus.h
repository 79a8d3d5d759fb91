// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Line.h"
#include "Result.h"

#include <QList>
#include <QString>

#include <functional>

/// A row of the table of texts in LineStatusGroup.cpp for each.
enum class PortState { Closed, Open, Waiting };

/// What is shown of one port.
struct LineStatus {
    QString caption; ///< "COM1"
    PortState state = PortState::Closed;
    QString name;          ///< of its device, as the user gave it; empty if the port has none
    QString device;        ///< canonical name, of one that is waited for too; empty while closed
    QString settings;      ///< "9600,N,8,1", or what there is to say in its place
    LineCounts counts;     ///< since the last opening
    QString description{}; ///< what the other side calls itself, of a remote line alone
};

/// The lines by which this side tells of itself.
enum class OwnLine { RTS, DTR };

/// Where the window gets what it shows, and who does what it is asked for. Called on the window's
/// thread.
struct LineStatusSource {
    /// One or two, in the order of the channels.
    std::function<QList<LineStatus>()> Lines;
    std::function<Result(int channel, OwnLine line, bool on)> Switch;
};
