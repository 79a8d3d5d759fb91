// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>

/// One thing that was found out of a port.
struct Finding {
    enum class Weight {
        Fact,   ///< as it should be, or neither good nor bad
        Notice, ///< it may be a trouble
        Fault   ///< it stands in the way of opening
    };

    QString title; ///< such as "Rights"
    QString text;
    Weight weight = Weight::Fact;
    QString cure{}; ///< what to do about it, a command where there is one
};

/// All that was found out of one port.
struct DoctorReport {
    QString port; ///< what it was asked for by
    QList<Finding> findings{};

    bool HasFault() const;
    /// The port and what is to be thought of it in a line, and below it a line for each finding:
    /// "!" begins a fault, "*" a notice. Nothing in it can take a terminal over.
    QString Text() const;
};

/// A word of a command for a shell, in quotes if it needs them.
QString ShellWord(const QString &word);
