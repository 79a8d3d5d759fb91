// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QtGlobal>

/// What the send line was left with.
struct SendLineSettings {
    qint32 Form = 0; ///< a Representation
    QString Appends; ///< a SendAppendix
    qint32 EveryMilliseconds = 1000;
    qint32 Count = 0; ///< of a repeat; 0: until it is ended
};
