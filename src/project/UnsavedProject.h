// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ReceiveSequence.h"
#include "SendSequence.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>

class MdSequenceEdition;
struct ProjectState;

/// A project as it is in memory, saved or not: its names and all that its tables hold, records
/// behind the counts included. Unlike a project file its text keeps every character of them.
struct UnsavedProject {
    QString folder; ///< with trailing separator
    QString name;   ///< without extension; empty for an unnamed project
    int sendCount = 0;
    int receiveCount = 0;
    std::map<int, SendSequence> send{}; ///< by index: those in use and those that are not empty
    std::map<int, ReceiveSequence> receive{};

    static UnsavedProject Of(const MdSequenceEdition &sequences, const ProjectState &state);
    void PutInto(MdSequenceEdition &sequences) const;

    QByteArray ToText() const;
    /// Empty if that is not such a text, or one that says what no project can be.
    static std::optional<UnsavedProject> FromText(const QByteArray &text);
};
