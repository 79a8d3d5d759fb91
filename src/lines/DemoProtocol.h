// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommSettings.h"

#include <QByteArray>
#include <QByteArrayView>

#include <span>

/// What the simulated instruments say to each other and to the program, and when: the one place
/// for their texts.
namespace DemoProtocol
{

enum class Text {
    Greeting,      ///< of the instrument that the program talks to
    GreetingOfTwo, ///< while the program listens to two
    IdentificationRequest,
    Identification,
    MeasurementRequest,
    Reading, ///< a temperature that changes slowly
    StatusRequest,
    StatusFrame, ///< 02 'S', count, tenths of a degree (high, low), check byte, 03
    Question,    ///< asks for Yes
    Yes,
    Acknowledgement,
    Refusal, ///< of a request that is not known
};

/// The bytes of a text, line end included. The number counts readings: a later one measures
/// another temperature.
QByteArray BytesOf(Text text, int number = 0);

/// What an instrument answers to a received line, given without its line end.
Text AnswerTo(QByteArrayView line);

/// The period of what is said once each time the line is opened.
constexpr int Once = 0;

/// Something that is said unasked.
struct Utterance {
    int first;   ///< milliseconds after the line was opened
    int period;  ///< milliseconds from one to the next, or Once
    int channel; ///< 0 or 1; when the program listens to two instruments, 0 is the controller
    Text text;
};

/// All that is said unasked in a communication mode.
std::span<const Utterance> UtterancesOf(CommMode mode);

} // namespace DemoProtocol
