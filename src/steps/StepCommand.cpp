// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "StepCommand.h"

#include "StepMaker.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

namespace
{

/// A whole number may stand for its text, as "on": 1 does.
std::optional<QString> TextOf(const QJsonValue &value)
{
    if (value.isString())
        return value.toString();
    const qint64 number = value.toInteger(-1);
    if (value.isDouble() && number >= 0)
        return QString::number(number);
    return {};
}

/// Fills the parts from the object's keys; a key that means nothing is a slip of the hand.
Result ReadParts(StepParts &parts, const QJsonObject &object)
{
    for (auto key = object.begin(); key != object.end(); ++key) {
        if (key.key() == u"id")
            continue;
        const std::optional<QString> text = TextOf(key.value());
        if (!text)
            return Failure{QStringLiteral("\"%1\" is neither a text nor a number").arg(key.key())};
        if (key.key() == u"step")
            parts.verb = *text;
        else if (key.key() == u"what")
            parts.operand = StepWords::Word{*text, false};
        else if (key.key() == u"on")
            parts.on = text;
        else if (key.key() == u"within")
            parts.within = text;
        else if (key.key() == u"group")
            parts.group = *text;
        else
            return Failure{QStringLiteral("\"%1\" means nothing here").arg(key.key())};
    }
    if (parts.verb.isEmpty())
        return Failure{QStringLiteral("there is no \"step\"")};
    return {};
}

QString WrittenAs(const StepParts &parts)
{
    QString text = parts.verb;
    if (parts.operand)
        text += u' ' + parts.operand->text;
    if (parts.on)
        text += QStringLiteral(" on ") + *parts.on;
    if (parts.within)
        text += QStringLiteral(" within ") + *parts.within;
    return text;
}

} // namespace

StepCommand ReadStepCommand(QByteArrayView line, const StepMaker &maker)
{
    StepCommand command;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(line.toByteArray(), &error);
    if (!document.isObject()) {
        command.result =
            Failure{error.error == QJsonParseError::NoError
                        ? QStringLiteral("the line is no JSON object")
                        : QStringLiteral("the line is no JSON: ") + error.errorString()};
        return command;
    }
    const QJsonObject object = document.object();
    command.id = object.value(u"id");
    StepParts parts;
    command.result = ReadParts(parts, object);
    if (command.result.Failed())
        return command;
    StepMaker::Made made = maker.Make(parts);
    command.step = std::move(made.step);
    command.step.text = WrittenAs(parts);
    command.result = std::move(made.result);
    if (!command.result.Failed() && !command.step.Counts())
        command.result = Failure{parts.verb + QStringLiteral(" is no command")};
    return command;
}
