// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LogSettings.h"
#include "Representation.h"

#include <QString>

#include <array>

/// One of the files that a log can have.
struct LogForm {
    Representation representation;
    bool LogSettings::*flag; ///< whether the user wants it
    const char *suffix;

    /// As messages call it.
    QString Name() const { return QLatin1String(RepresentationCaptions[size_t(representation)]); }
};

/// In the order in which log files are looked for, opened and closed.
constexpr std::array<LogForm, RepresentationCount> LogForms = {
    {{Representation::Ascii, &LogSettings::ASCII, "_asc"},
     {Representation::Decimal, &LogSettings::Decimal, "_dec"},
     {Representation::Hex, &LogSettings::HEX, "_hex"},
     {Representation::Binary, &LogSettings::Binary, "_bin"}}};

const LogForm &FormOf(Representation representation);

/// What the names of a log's files have in common.
struct LogNames {
    QString folder; ///< with trailing separator
    QString base;

    /// From the path that the user chose: without its extension, and without a suffix, so that
    /// choosing one file of a log means that log.
    static LogNames Of(const QString &path);

    QString PathOf(const LogForm &form) const;
};
