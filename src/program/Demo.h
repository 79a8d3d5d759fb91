// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommSettings.h"

#include <memory>

class DemoInstrument;
class MdSequenceEdition;
class PortDevices;
class UserPrompts;
struct CommConfiguration;

/// What the simulated instrument is attached to.
struct DemoParts {
    CommConfiguration &comm;
    PortDevices &devices;
    MdSequenceEdition &sequences;
    UserPrompts &prompts;
};

/// Puts the simulated instrument on COM1 (and COM2 in the monitoring modes) for this run, and its
/// project into the tables. If that fails the user is told, nothing is changed and the result is
/// null: COM1 would be one of the user's own devices.
std::unique_ptr<DemoInstrument> AttachDemo(const DemoParts &parts, CommMode mode);
