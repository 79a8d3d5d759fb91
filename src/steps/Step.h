// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

/// One step of a run.
struct Step {
    enum class Kind {
        Send,
        Expect, ///< the bytes come within the time
        Forbid, ///< from here on they must not come
        Allow,  ///< they may again
        Quiet,  ///< nothing comes for the time
        Wait,
        RTS,
        DTR,
        Break,
        Close, ///< the ports
        Open,
        Repeat, ///< what stands up to the End that belongs to it
        End,
        Group ///< names what follows, for reports
    };

    Kind kind = Kind::Wait;
    QString text;               ///< as it was written
    int line = 0;               ///< of the file; else the number of the step. From 1
    QByteArray bytes;           ///< Send, Expect, Forbid, Allow; not empty there
    QByteArray name;            ///< of the sequence, 8-bit; empty where bytes were written
    std::optional<int> channel; ///< 0 or 1; Expect, Forbid, Allow: none is any
    qint64 time = 0;            ///< nanoseconds; Expect, Quiet, Wait, Break
    bool on = false;            ///< RTS, DTR
    int count = 0;              ///< Repeat: 1 and up
    size_t partner = 0;         ///< Repeat and End: the place of the other
    QString group;              ///< that it belongs to; empty for none

    /// Whether it is something that passes or fails, and nothing that orders the others.
    bool Counts() const { return kind != Kind::Repeat && kind != Kind::End && kind != Kind::Group; }
};

/// The steps of a run, in order; each Repeat has its End.
struct StepProgram {
    std::vector<Step> steps;
    bool ofFile = false; ///< lines are those of a file

    /// How a message names the place of a step: "line 7" or "step 7".
    QString PlaceOf(const Step &step) const
    {
        return (ofFile ? QStringLiteral("line %1") : QStringLiteral("step %1")).arg(step.line);
    }
};
