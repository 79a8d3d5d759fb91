// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "StepMaker.h"

#include "CodePage1252.h"
#include "MdSequenceEdition.h"

#include <QList>

#include <array>
#include <utility>

namespace
{

constexpr int MostRepeats = 1'000'000'000;

using Operand = StepMaker::Operand;
using Kind = Step::Kind;

constexpr std::array Verbs = {
    StepMaker::Verb{"send", Kind::Send, Operand::SendName, false, false},
    StepMaker::Verb{"send-hex", Kind::Send, Operand::Hex, false, false},
    StepMaker::Verb{"send-text", Kind::Send, Operand::Text, false, false},
    StepMaker::Verb{"expect", Kind::Expect, Operand::Sequence, true, true},
    StepMaker::Verb{"forbid", Kind::Forbid, Operand::Sequence, true, false},
    StepMaker::Verb{"allow", Kind::Allow, Operand::Sequence, true, false},
    StepMaker::Verb{"quiet", Kind::Quiet, Operand::Time, false, false},
    StepMaker::Verb{"wait", Kind::Wait, Operand::Time, false, false},
    StepMaker::Verb{"rts", Kind::RTS, Operand::Switch, false, false},
    StepMaker::Verb{"dtr", Kind::DTR, Operand::Switch, false, false},
    StepMaker::Verb{"break", Kind::Break, Operand::Time, false, false},
    StepMaker::Verb{"close", Kind::Close, Operand::None, false, false},
    StepMaker::Verb{"open", Kind::Open, Operand::None, false, false},
    StepMaker::Verb{"repeat", Kind::Repeat, Operand::Count, false, false},
    StepMaker::Verb{"end", Kind::End, Operand::None, false, false},
    StepMaker::Verb{"group", Kind::Group, Operand::Group, false, false},
};

Result FillSwitch(Step &step, const QString &text)
{
    step.on = text == u"on";
    if (step.on || text == u"off")
        return {};
    return Failure{QStringLiteral("\"%1\" is neither on nor off").arg(text)};
}

Result FillCount(Step &step, const QString &text)
{
    bool isNumber = false;
    step.count = text.toInt(&isNumber);
    if (isNumber && step.count >= 1 && step.count <= MostRepeats)
        return {};
    return Failure{
        QStringLiteral("\"%1\" is no number of times from 1 to %2").arg(text).arg(MostRepeats)};
}

Result FillTime(qint64 &time, const QString &text)
{
    StepWords::Time read = StepWords::FromTime(text);
    time = read.nanoseconds;
    return std::move(read.result);
}

Result FillBytes(Step &step, StepWords::Bytes read)
{
    step.bytes = std::move(read.bytes);
    if (!read.result.Failed() && step.bytes.isEmpty())
        return Failure{QStringLiteral("there are no bytes")};
    return std::move(read.result);
}

} // namespace

const StepMaker::Verb *StepMaker::VerbOf(QStringView name)
{
    for (const Verb &verb : Verbs) {
        if (name == QLatin1String(verb.name))
            return &verb;
    }
    return nullptr;
}

StepMaker::Made StepMaker::Make(const StepParts &parts) const
{
    Made made;
    const Verb *const verb = VerbOf(parts.verb);
    if (!verb) {
        made.result = Failure{QStringLiteral("\"%1\" is no step").arg(parts.verb)};
        return made;
    }
    made.step.kind = verb->kind;
    made.step.group = parts.group;
    if (verb->operand != Operand::None && !parts.operand)
        made.result = Failure{QStringLiteral("%1 needs something behind it").arg(parts.verb)};
    else if (verb->operand == Operand::None && parts.operand)
        made.result = Failure{QStringLiteral("%1 takes nothing behind it").arg(parts.verb)};
    if (!made.result.Failed() && parts.operand)
        made.result = FillOperand(made.step, *verb, *parts.operand);
    if (!made.result.Failed())
        made.result = FillOptions(made.step, *verb, parts);
    if (!made.result.Failed())
        made.result = CheckMode(made.step);
    return made;
}

Result StepMaker::FillOperand(Step &step, const Verb &verb, const StepWords::Word &word) const
{
    switch (verb.operand) {
    case Operand::Hex:
        return FillBytes(step, StepWords::FromHex(word.text));
    case Operand::Text:
        return FillBytes(step, StepWords::FromText(word.text));
    case Operand::Time:
        return FillTime(step.time, word.text);
    case Operand::Switch:
        return FillSwitch(step, word.text);
    case Operand::Count:
        return FillCount(step, word.text);
    case Operand::Group:
        step.group = word.Name().trimmed();
        return {};
    case Operand::None:
        return {};
    case Operand::SendName:
    case Operand::Sequence:
        break;
    }
    const QString name = word.Name();
    Found found;
    if (verb.operand == Operand::Sequence)
        found = FindSequence(word);
    else if (name.startsWith(u"send:"))
        found = FindNamed(name.sliced(5), true, false);
    else
        found = FindNamed(name, true, false);
    step.bytes = std::move(found.bytes);
    step.name = std::move(found.name);
    return std::move(found.result);
}

Result StepMaker::FillOptions(Step &step, const Verb &verb, const StepParts &parts) const
{
    if (parts.on && !verb.takesChannel)
        return Failure{QStringLiteral("%1 takes no channel").arg(parts.verb)};
    if (parts.within && !verb.takesLimit)
        return Failure{QStringLiteral("%1 takes no time limit").arg(parts.verb)};
    if (parts.on) {
        if (*parts.on != u"1" && *parts.on != u"2")
            return Failure{QStringLiteral("\"%1\" is no channel: 1 or 2").arg(*parts.on)};
        step.channel = *parts.on == u"2" ? 1 : 0;
    }
    if (!verb.takesLimit)
        return {};
    step.time = m_rules.within;
    return parts.within ? FillTime(step.time, *parts.within) : Result();
}

Result StepMaker::CheckMode(const Step &step) const
{
    if (!m_rules.maySend && step.kind == Step::Kind::Send)
        return Failure{QStringLiteral("nothing is sent in mode 1")};
    if (!m_rules.maySend && step.kind == Step::Kind::Break)
        return Failure{QStringLiteral("no break is sent in mode 1")};
    if (!m_rules.twoChannels && step.channel == 1)
        return Failure{QStringLiteral("there is no channel 2 in mode 0")};
    return {};
}

/// Bytes as they are written, or the name of a sequence of either kind.
StepMaker::Found StepMaker::FindSequence(const StepWords::Word &word) const
{
    using Reader = StepWords::Bytes (*)(QStringView);
    constexpr std::pair<QStringView, Reader> Readers[] = {{u"hex:", StepWords::FromHex},
                                                          {u"text:", StepWords::FromText}};
    for (const auto &[prefix, reader] : Readers) {
        if (!word.text.startsWith(prefix))
            continue;
        Step written;
        Result result = FillBytes(written, reader(QStringView(word.text).sliced(prefix.size())));
        return {std::move(written.bytes), {}, std::move(result)};
    }
    const QString name = word.Name();
    if (name.startsWith(u"send:"))
        return FindNamed(name.sliced(5), true, false);
    if (name.startsWith(u"receive:"))
        return FindNamed(name.sliced(8), false, true);
    return FindNamed(name, true, true);
}

StepMaker::Found StepMaker::FindNamed(const QString &name, bool inSend, bool inReceive) const
{
    const CodePage1252::Encoded wanted = CodePage1252::FromUnicode(name);
    QList<QByteArray> found;
    if (wanted.firstForeign < 0) {
        for (int i = 0; inSend && i < m_sequences.SendCount(); ++i) {
            if (m_sequences.SendAt(i).Name == wanted.bytes)
                found << m_sequences.SendAt(i).Sequence;
        }
        const qsizetype sent = found.size();
        for (int i = 0; inReceive && i < m_sequences.ReceiveCount(); ++i) {
            if (m_sequences.ReceiveAt(i).Name == wanted.bytes)
                found << m_sequences.ReceiveAt(i).Sequence;
        }
        if (sent > 0 && found.size() > sent) {
            const QString text =
                QStringLiteral("\"%1\" is a send and a receive sequence: send:%1 or receive:%1");
            return {{}, {}, Failure{text.arg(name)}};
        }
    }
    if (found.size() > 1) {
        const QString text = QStringLiteral("there are %1 sequences of the name \"%2\"");
        return {{}, {}, Failure{text.arg(found.size()).arg(name)}};
    }
    if (found.isEmpty()) {
        const QString text = QStringLiteral("the project has no %1named \"%2\"");
        const QString kind = inSend == inReceive ? QStringLiteral("sequence ")
                             : inSend            ? QStringLiteral("send sequence ")
                                                 : QStringLiteral("receive sequence ");
        return {{}, {}, Failure{text.arg(kind, name)}};
    }
    if (found.first().isEmpty())
        return {{}, {}, Failure{QStringLiteral("the sequence \"%1\" has no bytes").arg(name)}};
    return {found.first(), wanted.bytes, {}};
}
