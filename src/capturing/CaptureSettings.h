// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// What the file dialogs of captures remember.
struct CaptureSettings {
    QString Folder; ///< of the last capture, with trailing separator; empty before the first one
};
