// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ExtcapArguments.h"

#include "LineSettings.h"
#include "PortNumber.h"

#include <algorithm>

namespace
{

using Action = ExtcapArguments::Action;
using Apply = Result (*)(ExtcapArguments &, const QString &value);

struct OptionRow {
    const char *name;
    bool takesValue;
    Apply apply;
};

/// Where there are several the last one in the order of the enumeration is meant.
template <Action Asked> Result Ask(ExtcapArguments &arguments, const QString &)
{
    arguments.action = std::max(arguments.action, Asked);
    return {};
}

template <auto Member> Result Take(ExtcapArguments &arguments, const QString &value)
{
    arguments.*Member = value;
    return {};
}

template <auto Member> Result TakeFlag(ExtcapArguments &arguments, const QString &value)
{
    if (value != u"true" && value != u"false")
        return Failure{QStringLiteral("it must be true or false")};
    arguments.*Member = value == u"true";
    return {};
}

template <size_t Channel> Result TakeDevice(ExtcapArguments &arguments, const QString &value)
{
    arguments.devices[Channel] = value.trimmed();
    return {};
}

Result TakeSettings(ExtcapArguments &arguments, const QString &value)
{
    arguments.settings = value.trimmed();
    if (arguments.settings.isEmpty() || ParseLineSettings(arguments.settings))
        return {};
    return Failure{QStringLiteral("it must be of the form 9600,N,8,1: baud rate, parity E, M, N, O "
                                  "or S, data bits 4 to 8, stop bits 1, 1.5 or 2")};
}

Result TakeFilter(ExtcapArguments &arguments, const QString &value)
{
    arguments.filter = value.trimmed();
    return Ask<Action::CheckFilter>(arguments, value);
}

constexpr OptionRow OptionRows[] = {
    {"help", false, Ask<Action::ShowHelp>},
    {"version", false, Ask<Action::ShowVersion>},
    {"extcap-version", true, Ask<Action::TellVersion>},
    {"extcap-interfaces", false, Ask<Action::ListLines>},
    {"extcap-interface", true, Take<&ExtcapArguments::line>},
    {"extcap-dlts", false, Ask<Action::ListLinkTypes>},
    {"extcap-config", false, Ask<Action::ListQuestions>},
    {"extcap-capture-filter", true, TakeFilter},
    {"capture", false, Ask<Action::Capture>},
    {"fifo", true, Take<&ExtcapArguments::fifo>},
    {"device", true, TakeDevice<0>},
    {"second-device", true, TakeDevice<1>},
    {"settings", true, TakeSettings},
    {"reconnect", true, TakeFlag<&ExtcapArguments::reconnect>},
    {"request-to-send", true, TakeFlag<&ExtcapArguments::requestToSend>},
};

const OptionRow *RowOf(const QString &name)
{
    const auto *row =
        std::find_if(std::begin(OptionRows), std::end(OptionRows),
                     [&](const OptionRow &each) { return name == QLatin1StringView(each.name); });
    return row == std::end(OptionRows) ? nullptr : row;
}

bool IsOption(const QString &argument)
{
    return argument.startsWith(QLatin1String("--"));
}

/// That all is there that the action needs.
Result CheckWhole(const ExtcapArguments &arguments)
{
    if (arguments.action == Action::None)
        return Failure{QStringLiteral("nothing is asked for")};
    if (arguments.action < Action::CheckFilter)
        return {};
    if (ExtcapLineNumbers(arguments.line).isEmpty())
        return Failure{QStringLiteral("--extcap-interface %1: there is no such line; they are "
                                      "called %2 and so on")
                           .arg(arguments.line, ExtcapLineName({1}))};
    if (arguments.action == Action::Capture && arguments.fifo.isEmpty())
        return Failure{QStringLiteral("--capture needs --fifo")};
    return {};
}

} // namespace

ParsedExtcapArguments ParseExtcapArguments(const QStringList &arguments)
{
    ParsedExtcapArguments parsed;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (!IsOption(arguments[i]))
            continue; // the value of what is not known
        const QString name = arguments[i].section(u'=', 0, 0).sliced(2);
        const OptionRow *row = RowOf(name);
        if (!row)
            continue;
        QString value;
        if (arguments[i].contains(u'='))
            value = arguments[i].section(u'=', 1);
        else if (row->takesValue && i + 1 < arguments.size() && !IsOption(arguments[i + 1]))
            value = arguments[++i];
        if (const Result applied = row->apply(parsed.arguments, value); applied.Failed()) {
            parsed.result =
                Failure{QStringLiteral("--%1 %2: %3").arg(name, value, applied.Cause())};
            return parsed;
        }
    }
    parsed.result = CheckWhole(parsed.arguments);
    return parsed;
}

QString ExtcapLineName(const QList<int> &comNumbers)
{
    QString name = QStringLiteral("serimonde");
    for (const int number : comNumbers)
        name += QStringLiteral("-COM%1").arg(number);
    return name;
}

QList<int> ExtcapLineNumbers(const QString &name)
{
    QList<int> numbers;
    for (const QString &part : name.split(QStringLiteral("-COM")).sliced(1))
        numbers.append(part.toInt());
    const bool known = std::all_of(numbers.begin(), numbers.end(), IsPortNumber) &&
                       numbers.size() <= 2 && ExtcapLineName(numbers) == name;
    return known ? numbers : QList<int>();
}
