// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DoctorReport.h"

class PortFinder;

/// How far an examination goes.
enum class Examination {
    Facts,   ///< opens nothing and connects to nothing
    Connect, ///< connects to a port on another machine, and leaves it as it was
    Try      ///< opens the port, sets it, reads it back and closes it
};

/// Examines a device by whatever name, or the address of a port on another machine. The settings
/// are those that a trial asks for, as "9600,N,8,1". It takes as long as the system lets it.
DoctorReport ExaminePort(const PortFinder &finder, const QString &device, Examination examination,
                         const QString &settings);
