// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "JsonLines.h"

#include "ByteLook.h"
#include "CodePage1252.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <array>

namespace
{

using Kind = TrafficEvent::Kind;

/// The names are part of the format.
constexpr std::array KindNames = {
    std::pair{Kind::Received, "received"}, std::pair{Kind::Sent, "sent"},
    std::pair{Kind::NotSent, "not-sent"},  std::pair{Kind::Damaged, "damaged"},
    std::pair{Kind::Break, "break"},       std::pair{Kind::Overrun, "overrun"},
    std::pair{Kind::ModemLines, "modem"},  std::pair{Kind::Opened, "opened"},
    std::pair{Kind::Closed, "closed"},     std::pair{Kind::Gone, "gone"},
    std::pair{Kind::Back, "back"},         std::pair{Kind::Lost, "lost"},
    std::pair{Kind::ClockSet, "clock-set"}};

QByteArray LineOf(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QJsonObject BytesOf(const QByteArray &bytes)
{
    return {{QStringLiteral("hex"), JsonLines::Hex(bytes)},
            {QStringLiteral("text"), ByteLook::ToPictures(bytes)}};
}

void PutNames(QJsonObject &object, const QList<QByteArray> &names)
{
    QJsonArray array;
    for (const QByteArray &name : names) {
        if (!name.isEmpty())
            array.append(CodePage1252::ToUnicode(name));
    }
    if (!array.isEmpty())
        object[QStringLiteral("names")] = array;
}

void PutLines(QJsonObject &object, const ModemLines &lines)
{
    object[QStringLiteral("cts")] = lines.CTS;
    object[QStringLiteral("dsr")] = lines.DSR;
    object[QStringLiteral("dcd")] = lines.DCD;
    object[QStringLiteral("ri")] = lines.RI;
}

} // namespace

QString JsonLines::NameOf(Kind kind)
{
    for (const auto &[row, name] : KindNames) {
        if (row == kind)
            return QLatin1String(name);
    }
    return {};
}

QString JsonLines::Hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex().toUpper());
}

QByteArray JsonLines::Traffic(const TrafficEvent &event) const
{
    QJsonObject object = {{QStringLiteral("event"), NameOf(event.kind)},
                          {QStringLiteral("us"), Microseconds(event.time.monotonic)},
                          {QStringLiteral("wall"), event.time.wall / 1000},
                          {QStringLiteral("channel"), event.channel + 1}};
    if (event.kind == Kind::Received || event.kind == Kind::Sent)
        object[QStringLiteral("hex")] = Hex(event.bytes);
    PutNames(object, event.names);
    if (event.orderUncertain)
        object[QStringLiteral("uncertain")] = true;
    if (event.kind == Kind::Sent || event.answer)
        object[QStringLiteral("answer")] = event.answer;
    if (event.count != 0)
        object[QStringLiteral("count")] = event.count;
    if (!event.cause.isEmpty())
        object[QStringLiteral("cause")] = event.cause;
    if (event.kind == Kind::ModemLines)
        PutLines(object, event.modem);
    return LineOf(object);
}

QByteArray JsonLines::StepDone(const StepOutcome &outcome) const
{
    constexpr std::array Verdicts = {"passed", "failed", "not-run"};
    QJsonObject object = {
        {QStringLiteral("event"), QStringLiteral("step")},
        {QStringLiteral("line"), outcome.step.line},
        {QStringLiteral("step"), outcome.step.text},
        {QStringLiteral("result"), QLatin1String(Verdicts[size_t(outcome.verdict)])},
        {QStringLiteral("us"), Microseconds(outcome.ended)}};
    if (!outcome.step.group.isEmpty())
        object[QStringLiteral("group")] = outcome.step.group;
    if (outcome.verdict == StepOutcome::Verdict::NotRun)
        return LineOf(object);
    object[QStringLiteral("number")] = outcome.number;
    object[QStringLiteral("took")] = (outcome.ended - outcome.began) / 1000;
    if (outcome.verdict == StepOutcome::Verdict::Failed) {
        object[QStringLiteral("cause")] = outcome.cause;
        object[QStringLiteral("heard")] = BytesOf(outcome.heard);
    }
    return LineOf(object);
}

QByteArray JsonLines::Answer(const StepOutcome &outcome, const QJsonValue &id) const
{
    const bool passed = outcome.verdict == StepOutcome::Verdict::Passed;
    QJsonObject object = {{QStringLiteral("event"), QStringLiteral("answer")},
                          {QStringLiteral("line"), outcome.step.line},
                          {QStringLiteral("ok"), passed},
                          {QStringLiteral("us"), Microseconds(outcome.ended)},
                          {QStringLiteral("took"), (outcome.ended - outcome.began) / 1000}};
    if (!id.isUndefined())
        object[QStringLiteral("id")] = id;
    if (!passed) {
        object[QStringLiteral("error")] = outcome.verdict == StepOutcome::Verdict::NotRun
                                              ? QStringLiteral("not run")
                                              : outcome.cause;
        object[QStringLiteral("heard")] = BytesOf(outcome.heard);
    }
    return LineOf(object);
}

QByteArray JsonLines::Forbidden(const StepOutcome &outcome) const
{
    return LineOf({{QStringLiteral("event"), QStringLiteral("forbidden")},
                   {QStringLiteral("line"), outcome.step.line},
                   {QStringLiteral("step"), outcome.step.text},
                   {QStringLiteral("us"), Microseconds(outcome.ended)},
                   {QStringLiteral("heard"), BytesOf(outcome.heard)}});
}

QByteArray JsonLines::Refusal(int line, const QJsonValue &id, const QString &cause) const
{
    QJsonObject object = {{QStringLiteral("event"), QStringLiteral("answer")},
                          {QStringLiteral("line"), line},
                          {QStringLiteral("ok"), false},
                          {QStringLiteral("error"), cause}};
    if (!id.isUndefined())
        object[QStringLiteral("id")] = id;
    return LineOf(object);
}

QByteArray JsonLines::Ended(const End &end) const
{
    QJsonObject object = {{QStringLiteral("event"), QStringLiteral("end")},
                          {QStringLiteral("us"), Microseconds(end.time)},
                          {QStringLiteral("status"), end.status},
                          {QStringLiteral("passed"), end.passed},
                          {QStringLiteral("failed"), end.failed},
                          {QStringLiteral("not-run"), end.notRun}};
    if (!end.cause.isEmpty())
        object[QStringLiteral("cause")] = end.cause;
    return LineOf(object);
}
