// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "StepParser.h"

#include "StepMaker.h"
#include "StepWords.h"

#include <QStringDecoder>

#include <algorithm>
#include <functional>
#include <span>
#include <utility>

namespace
{

using StepWords::Word;

/// Puts steps into a program one by one, until one is wrong.
class Builder
{
  public:
    Builder(const StepMaker &maker, bool ofFile) : m_maker(maker)
    {
        m_parsed.program.ofFile = ofFile;
    }

    bool Failed() const { return m_parsed.result.Failed(); }
    void Fail(int line, const QString &cause)
    {
        if (Failed())
            return;
        Step place;
        place.line = line;
        m_parsed.result =
            Failure{QStringLiteral("%1: %2").arg(m_parsed.program.PlaceOf(place), cause)};
    }

    void Add(const StepParts &parts, int line, const QString &text)
    {
        StepMaker::Made made = m_maker.Make(parts);
        if (made.result.Failed()) {
            Fail(line, made.result.Cause());
            return;
        }
        made.step.line = line;
        made.step.text = text;
        if (made.step.kind == Step::Kind::Repeat)
            Open(line);
        if (made.step.kind == Step::Kind::End && !Close(made.step))
            Fail(line, QStringLiteral("there is no repeat that this end belongs to"));
        if (made.step.kind == Step::Kind::Group)
            m_group = made.step.group;
        made.step.group = m_group;
        m_parsed.program.steps.push_back(std::move(made.step));
    }

    StepParser::Parsed Finish()
    {
        if (!m_open.empty()) {
            Fail(m_parsed.program.steps[m_open.back()].line,
                 QStringLiteral("the repeat has no end"));
        }
        // What checks nothing must not pass.
        const std::vector<Step> &steps = m_parsed.program.steps;
        const bool mayBeEmpty = steps.empty() && !m_parsed.program.ofFile;
        if (!mayBeEmpty && std::none_of(steps.begin(), steps.end(), std::mem_fn(&Step::Counts)))
            Fail(1, QStringLiteral("there are no steps"));
        return std::move(m_parsed);
    }

  private:
    void Open(int line)
    {
        m_open.push_back(m_parsed.program.steps.size());
        if (m_open.size() > StepParser::MostNested)
            Fail(line, QStringLiteral("repeat nests %1 deep at most").arg(StepParser::MostNested));
    }

    bool Close(Step &end)
    {
        if (m_open.empty())
            return false;
        end.partner = m_open.back();
        m_parsed.program.steps[end.partner].partner = m_parsed.program.steps.size();
        m_open.pop_back();
        m_group = m_parsed.program.steps[end.partner].group;
        return true;
    }

    const StepMaker &m_maker;
    StepParser::Parsed m_parsed;
    std::vector<size_t> m_open; ///< the repeats that have no end yet
    QString m_group;            ///< the one that steps belong to; a repeat's own end with it
};

/// Takes a step off the beginning of the words; the options stand in any order.
struct Taken {
    StepParts parts;
    Result result{};
};
Taken TakeStep(std::span<const Word> &words)
{
    const auto next = [&words] {
        Word word = words.front();
        words = words.subspan(1);
        return word;
    };
    Taken taken;
    taken.parts.verb = next().text;
    const StepMaker::Verb *const verb = StepMaker::VerbOf(taken.parts.verb);
    if (!verb || verb->operand == StepMaker::Operand::None || words.empty())
        return taken;
    taken.parts.operand = next();
    while (!words.empty() && !words.front().quoted) {
        const QString &option = words.front().text;
        std::optional<QString> *place = nullptr;
        if (option == u"on" && verb->takesChannel)
            place = &taken.parts.on;
        else if (option == u"within" && verb->takesLimit)
            place = &taken.parts.within;
        if (!place)
            break;
        const QString name = next().text;
        if (words.empty() || *place) {
            taken.result = Failure{words.empty() ? name + QLatin1String(" needs a value")
                                                 : name + QLatin1String(" stands there twice")};
            break;
        }
        *place = next().text;
    }
    return taken;
}

/// The one step that a line holds.
void AddLine(Builder &builder, const QString &line, int number)
{
    const StepWords::Words split = StepWords::Split(line);
    if (split.result.Failed()) {
        builder.Fail(number, split.result.Cause());
        return;
    }
    if (split.words.empty())
        return;
    std::span<const Word> words = split.words;
    const Taken taken = TakeStep(words);
    if (taken.result.Failed()) {
        builder.Fail(number, taken.result.Cause());
        return;
    }
    builder.Add(taken.parts, number, line.trimmed());
    if (!words.empty())
        builder.Fail(number, QStringLiteral("\"%1\" is too much").arg(words.front().text));
}

QString Joined(std::span<const Word> words)
{
    QStringList texts;
    for (const Word &word : words) {
        const bool blank = word.text.contains(u' ') || word.text.isEmpty();
        texts << (blank ? u'"' + word.text + u'"' : word.text);
    }
    return texts.join(u' ');
}

} // namespace

bool StepParser::BeginsStep(const QString &argument)
{
    const qsizetype blank = argument.trimmed().indexOf(u' ');
    return StepMaker::VerbOf(QStringView(argument.trimmed()).left(blank)) != nullptr;
}

StepParser::Parsed StepParser::FromArguments(const QStringList &arguments, const StepMaker &maker)
{
    std::vector<Word> all;
    for (const QString &argument : arguments)
        all.push_back({argument, false});
    Builder builder(maker, false);
    std::span<const Word> words = all;
    for (int number = 1; !words.empty() && !builder.Failed(); ++number) {
        if (words.front().text.trimmed().contains(u' ')) {
            AddLine(builder, words.front().text, number);
            words = words.subspan(1);
            continue;
        }
        const std::span<const Word> before = words;
        const Taken taken = TakeStep(words);
        if (taken.result.Failed())
            builder.Fail(number, taken.result.Cause());
        else
            builder.Add(taken.parts, number, Joined(before.first(before.size() - words.size())));
    }
    return builder.Finish();
}

StepParser::Parsed StepParser::FromFile(const QByteArray &content, const StepMaker &maker)
{
    Builder builder(maker, true);
    QStringDecoder decode(QStringDecoder::Utf8);
    int number = 0;
    for (const QByteArray &line : content.split('\n')) {
        if (builder.Failed())
            break;
        ++number;
        decode.resetState();
        QString text = decode(line.endsWith('\r') ? line.chopped(1) : line);
        if (decode.hasError() || text.contains(QChar::Null))
            builder.Fail(number, QStringLiteral("the line is no text in UTF-8"));
        else
            AddLine(builder, text, number);
    }
    return builder.Finish();
}
