// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdSequenceEdition.h"
#include "StepCommand.h"
#include "StepMaker.h"
#include "StepParser.h"

#include <cstdint>
#include <cstdlib>

namespace
{

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

bool HasBytes(const Step &step)
{
    switch (step.kind) {
    case Step::Kind::Send:
    case Step::Kind::Expect:
    case Step::Kind::Forbid:
    case Step::Kind::Allow:
        return !step.bytes.isEmpty();
    default:
        return true;
    }
}

} // namespace

/// Any bytes are read as a command, and as a file of steps: what comes of them is whole, or the
/// cause is told.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    MdSequenceEdition tables;
    tables.AddSend({.Name = "Ping", .Sequence = "PING"});
    tables.AddReceive({.Name = "Pong", .Sequence = "PONG"});
    const StepMaker maker(tables, {});

    const StepCommand command = ReadStepCommand(bytes, maker);
    Require(command.result.Failed() || (command.step.Counts() && HasBytes(command.step)));
    Require(!command.result.Failed() || !command.result.Cause().isEmpty());

    const StepParser::Parsed parsed = StepParser::FromFile(bytes, maker);
    if (parsed.result.Failed()) {
        Require(parsed.result.Cause().startsWith(QStringLiteral("line ")));
        return 0;
    }
    const std::vector<Step> &steps = parsed.program.steps;
    for (size_t i = 0; i < steps.size(); ++i) {
        Require(HasBytes(steps[i]) && steps[i].time >= 0);
        if (!steps[i].Counts())
            Require(steps[steps[i].partner].partner == i);
    }
    return 0;
}
