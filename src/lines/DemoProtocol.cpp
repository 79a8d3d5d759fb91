// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DemoProtocol.h"

#include <QtMath>

#include <algorithm>
#include <iterator>

namespace DemoProtocol
{

namespace
{

struct FixedText {
    Text text;
    const char *bytes;
};

constexpr FixedText FixedTexts[] = {
    {Text::Greeting, "SIMULATED INSTRUMENT\r\n"},
    {Text::GreetingOfTwo, "SIMULATED INSTRUMENTS\r\n"},
    {Text::IdentificationRequest, "*IDN?\r\n"},
    {Text::Identification, "SIMULATED INSTRUMENT 1.0\r\n"},
    {Text::MeasurementRequest, "MEAS?\r\n"},
    {Text::StatusRequest, "STAT?\r\n"},
    {Text::Question, "READY?\r\n"},
    {Text::Yes, "YES\r\n"},
    {Text::Acknowledgement, "OK\r\n"},
    {Text::Refusal, "ERROR\r\n"},
};

struct Exchange {
    Text request;
    Text answer;
};

constexpr Exchange Exchanges[] = {
    {Text::IdentificationRequest, Text::Identification},
    {Text::MeasurementRequest, Text::Reading},
    {Text::StatusRequest, Text::StatusFrame},
    {Text::Yes, Text::Acknowledgement},
};

constexpr Utterance InstrumentAlone[] = {
    {100, Once, 0, Text::Greeting},
    {500, 1000, 0, Text::Reading},
    {1100, 3000, 0, Text::StatusFrame},
    {1900, 5000, 0, Text::Question},
};

constexpr Utterance ControllerAndMeter[] = {
    {100, Once, 1, Text::GreetingOfTwo}, // of both
    {500, 1000, 0, Text::MeasurementRequest},
    {560, 1000, 1, Text::Reading},
    {800, 6000, 0, Text::IdentificationRequest},
    {860, 6000, 1, Text::Identification},
    {1000, 3000, 0, Text::StatusRequest},
    {1060, 3000, 1, Text::StatusFrame},
    {2200, 5000, 1, Text::Question},
    {2260, 5000, 0, Text::Yes},
    {2320, 5000, 1, Text::Acknowledgement},
};

int TenthsOfDegree(int number)
{
    return 214 + qRound(9 * qSin(0.35 * number));
}

QByteArray ReadingBytes(int number)
{
    const int tenths = TenthsOfDegree(number);
    return "T=" + QByteArray::number(tenths / 10) + '.' + QByteArray::number(tenths % 10) +
           " C\r\n";
}

QByteArray StatusFrameBytes(int number)
{
    const int tenths = TenthsOfDegree(number);
    QByteArray frame("S");
    frame += char(number & 0xFF);
    frame += char(tenths >> 8);
    frame += char(tenths & 0xFF);
    char check = 0;
    for (const char byte : frame)
        check = char(check ^ byte);
    return '\x02' + frame + check + '\x03';
}

} // namespace

QByteArray BytesOf(Text text, int number)
{
    if (text == Text::Reading)
        return ReadingBytes(number);
    if (text == Text::StatusFrame)
        return StatusFrameBytes(number);
    const auto *row = std::find_if(std::begin(FixedTexts), std::end(FixedTexts),
                                   [text](const FixedText &fixed) { return fixed.text == text; });
    Q_ASSERT(row != std::end(FixedTexts));
    return row->bytes;
}

Text AnswerTo(QByteArrayView line)
{
    for (const Exchange &exchange : Exchanges) {
        if (BytesOf(exchange.request).trimmed() == line)
            return exchange.answer;
    }
    return Text::Refusal;
}

std::span<const Utterance> UtterancesOf(CommMode mode)
{
    if (mode == CommMode::SendReceive)
        return InstrumentAlone;
    return ControllerAndMeter;
}

} // namespace DemoProtocol
