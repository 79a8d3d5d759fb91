// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommSettings.h"
#include "LineSettings.h"

#include <optional>

/// What the command line put in the place of the user's own settings, for one run.
struct CommOverrides {
    std::optional<CommMode> mode;
    std::optional<LineSettings> line;
    std::optional<int> portA; ///< COM number of channel 1
    std::optional<int> portB; ///< COM number of channel 2
    bool reopen = false;      ///< whatever is stored
};

/// The texts of the line settings as the status panels show them; an index without a meaning
/// gives an empty text.
struct LineTexts {
    QString speed, parity, dataBits, stopBits;
};

/// The communication settings: what the user has stored, what this run has put in its place, and
/// so what is in force.
struct CommConfiguration {
    CommSettings stored;
    CommOverrides run;
    std::optional<CommMode> replay; ///< of a capture that is replayed, while it is

    CommMode Mode() const { return replay.value_or(ModeOfPorts()); }
    /// The mode in which the ports are opened.
    CommMode ModeOfPorts() const { return run.mode.value_or(ModeFromNumber(stored.CommType)); }
    /// Whether anything may be sent in the mode in force, by hand or as an answer.
    bool MaySend() const { return ::MaySend(Mode()); }
    /// Whether both channels are in use.
    bool TwoChannels() const { return Mode() != CommMode::SendReceive; }
    /// Whether both ports are, when they are open.
    bool TwoPorts() const { return ModeOfPorts() != CommMode::SendReceive; }
    int PortA() const { return run.portA.value_or(stored.CommPortA); }
    int PortB() const { return run.portB.value_or(stored.CommPortB); }
    /// Whether a device that went away is opened again when it is back.
    bool Reopens() const { return run.reopen || stored.CommReopen; }
    /// The text that a port is opened with.
    QString PortSettings() const;
    LineTexts Texts() const;
};
