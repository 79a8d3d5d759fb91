// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DoctorReport.h"
#include "PortFacts.h"

/// What is to be thought of a device of this machine. Its name is the one that the user gave.
QList<Finding> DeviceFindings(const QString &name, const DeviceFacts &facts);

/// The same of a trial.
QList<Finding> TrialFindings(const DeviceTrial &trial);
