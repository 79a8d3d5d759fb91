// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"

#include <QString>

/// What the names of a log's files have in common.
struct LogNames {
    QString folder; ///< with trailing separator
    QString base;

    /// From the path that the user chose: without its extension, and without a suffix, so that
    /// choosing one file of a log means that log.
    static LogNames Of(const QString &path);

    QString PathOf(Representation representation) const;
};
