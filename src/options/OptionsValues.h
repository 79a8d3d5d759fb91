// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommConfiguration.h"
#include "LogSettings.h"
#include "Result.h"
#include "SequenceSettings.h"
#include "StampText.h"

#include <QMap>
#include <QString>

class PortDevices;

/// What the options dialog shows, and gives back when it is confirmed.
struct OptionsValues {
    CommConfiguration comm;
    StampSettings stamp;
    SequenceSettings sequences;
    LogSettings log;
    /// Devices that were assigned to COM numbers in the dialog; an empty one takes the user's own
    /// assignment back.
    QMap<int, QString> devices{};
};

/// Whose settings the options dialog edits; all of it lives as long as the program.
struct OptionsSubjects {
    CommConfiguration &comm;
    StampSettings &stamp;
    SequenceSettings &sequences;
    LogSettings &log;
    PortDevices &assigned;
};

/// The settings of the subjects as they are now, and the way back of what has become of them.
/// Both walk the same list, so that none is shown and then lost. Devices go into the store at once;
/// the way back fails if they do not.
OptionsValues SnapshotOf(const OptionsSubjects &subjects);
Result ApplyTo(const OptionsSubjects &subjects, const OptionsValues &values);
