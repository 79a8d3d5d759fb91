// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"
#include "Step.h"
#include "StepWords.h"

#include <QStringView>

#include <optional>

class MdSequenceEdition;

/// What steps may do in a run, and what holds where they say nothing.
struct StepRules {
    bool maySend = true;
    bool twoChannels = false;
    qint64 within = 1'000'000'000; ///< nanoseconds that an expectation waits
};

/// A step as its parts stand, from wherever they were read.
struct StepParts {
    QString verb;
    std::optional<StepWords::Word> operand;
    std::optional<QString> on;     ///< a channel
    std::optional<QString> within; ///< a time
    QString group;                 ///< that it belongs to
};

/// Makes steps of their parts: looks up what they name, and refuses what cannot be done.
class StepMaker
{
  public:
    /// What a verb works on.
    enum class Operand { None, SendName, Hex, Text, Sequence, Time, Switch, Count, Group };
    struct Verb {
        const char *name;
        Step::Kind kind;
        Operand operand;
        bool takesChannel;
        bool takesLimit;
    };

    /// The tables live longer than the maker.
    StepMaker(const MdSequenceEdition &sequences, const StepRules &rules)
        : m_sequences(sequences), m_rules(rules)
    {
    }

    /// Null if there is no such verb.
    static const Verb *VerbOf(QStringView name);

    struct Made {
        Step step;
        Result result{};
    };
    /// Text and line of the step are left to who knows them, and so is the partner.
    Made Make(const StepParts &parts) const;

  private:
    struct Found {
        QByteArray bytes;
        QByteArray name;
        Result result{};
    };

    Result FillOperand(Step &step, const Verb &verb, const StepWords::Word &word) const;
    Result FillOptions(Step &step, const Verb &verb, const StepParts &parts) const;
    Result CheckMode(const Step &step) const;
    Found FindSequence(const StepWords::Word &word) const;
    Found FindNamed(const QString &name, bool inSend, bool inReceive) const;

    const MdSequenceEdition &m_sequences;
    StepRules m_rules;
};
