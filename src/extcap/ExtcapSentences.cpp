// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ExtcapSentences.h"

#include "CaptureFormat.h"
#include "CommConfiguration.h"
#include "ExtcapArguments.h"
#include "PlainText.h"
#include "PortDevices.h"
#include "ProgramInfo.h"

namespace
{

struct Part {
    const char *name;
    QString text;
};

/// Braces cannot be quoted.
QString Sentence(const char *kind, const QList<Part> &parts)
{
    QString sentence = QString::fromLatin1(kind) + u' ';
    for (const Part &part : parts) {
        QString text = PlainText(part.text);
        text.replace(u'{', u'(').replace(u'}', u')');
        sentence += QStringLiteral("{%1=%2}").arg(QLatin1StringView(part.name), text);
    }
    return sentence + u'\n';
}

QString Truth(bool truth)
{
    return truth ? QStringLiteral("true") : QStringLiteral("false");
}

/// An empty answer leaves it to the settings; what that is stands in the field.
QString DeviceQuestion(int number, int comNumber, const PortDevices &devices)
{
    return Sentence("arg", {{"number", QString::number(number)},
                            {"call", number == 0 ? QStringLiteral("--device")
                                                 : QStringLiteral("--second-device")},
                            {"display", QStringLiteral("Device of COM%1").arg(comNumber)},
                            {"type", QStringLiteral("string")},
                            {"placeholder", devices.DeviceOf(comNumber)},
                            {"tooltip", QStringLiteral("Such as /dev/ttyUSB0; empty: the one that "
                                                       "is assigned in Serimonde")}});
}

} // namespace

QString ExtcapSentences::Version()
{
    return Sentence("extcap", {{"version", ProgramInfo::Version()},
                               {"help", ProgramInfo::WebSite()},
                               {"display", QStringLiteral("Serimonde")}});
}

QString ExtcapSentences::Lines(const QList<ExtcapLine> &lines)
{
    QString sentences = Version();
    for (const ExtcapLine &line : lines)
        sentences += Sentence(
            "interface", {{"value", ExtcapLineName(line.comNumbers)}, {"display", line.caption}});
    return sentences;
}

QString ExtcapSentences::LinkTypes()
{
    return Sentence("dlt", {{"number", QString::number(CaptureFormat::LinkTypeRtacSerial)},
                            {"name", QStringLiteral("RTAC_SERIAL")},
                            {"display", QStringLiteral("Serial line")}});
}

QString ExtcapSentences::Questions(const QList<int> &comNumbers, const CommConfiguration &comm,
                                   const PortDevices &devices)
{
    QString sentences;
    int number = 0;
    for (const int comNumber : comNumbers)
        sentences += DeviceQuestion(number++, comNumber, devices);
    sentences += Sentence(
        "arg",
        {{"number", QString::number(number++)},
         {"call", QStringLiteral("--settings")},
         {"display", QStringLiteral("Port settings")},
         {"type", QStringLiteral("string")},
         {"placeholder", comm.PortSettings()},
         {"tooltip", QStringLiteral("Baud rate, parity (N, E, O, M, S), data bits, stop bits; "
                                    "empty: as set in Serimonde")},
         {"validation", QStringLiteral("^([0-9]+,[NEOMSneoms],[4-8],(1|1\\.5|2))?$")}});
    sentences += Sentence("arg", {{"number", QString::number(number++)},
                                  {"call", QStringLiteral("--reconnect")},
                                  {"display", QStringLiteral("Reopen a device that comes back")},
                                  {"type", QStringLiteral("boolean")},
                                  {"default", Truth(comm.Reopens())}});
    sentences += Sentence("arg", {{"number", QString::number(number++)},
                                  {"call", QStringLiteral("--request-to-send")},
                                  {"display", QStringLiteral("Request to send (RTS) on")},
                                  {"type", QStringLiteral("boolean")},
                                  {"default", QStringLiteral("true")},
                                  {"tooltip", QStringLiteral("Off where RTS switches a "
                                                             "transmitter on, such as that of an "
                                                             "RS485 adapter")}});
    return sentences;
}
