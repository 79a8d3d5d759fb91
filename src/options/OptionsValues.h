// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "project/SettingsRecord.h"

#include <QMap>
#include <QString>

/// What the options dialog shows, and gives back when it is confirmed.
struct OptionsValues {
    CommConfiguration comm;
    StampSettings stamp;
    qint16 Display = 0; ///< Representation of the sequence lists
    LogSettings log;
    /// Devices that were assigned to COM numbers in the dialog; an empty one takes the user's own
    /// assignment back.
    QMap<int, QString> devices{};
};
