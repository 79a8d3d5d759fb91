// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelnetOptions.h"

#include <algorithm>

namespace
{

using Side = TelnetOptions::Side;

struct WantedOption {
    Side side;
    quint8 option;
};

constexpr std::array Wanted = {
    WantedOption{Side::Here, Telnet::ComPort}, WantedOption{Side::Here, Telnet::Binary},
    WantedOption{Side::There, Telnet::Binary}, WantedOption{Side::Here, Telnet::SuppressGoAhead},
    WantedOption{Side::There, Telnet::SuppressGoAhead}};

bool IsWanted(Side side, quint8 option)
{
    return std::any_of(Wanted.begin(), Wanted.end(), [=](const WantedOption &wanted) {
        return wanted.side == side && wanted.option == option;
    });
}

/// Says, or asks, that a side does what the option means, or that it does not.
QByteArray Word(Side side, quint8 option, bool on)
{
    const quint8 verb =
        side == Side::Here ? (on ? Telnet::WILL : Telnet::WONT) : (on ? Telnet::DO : Telnet::DONT);
    return QByteArray().append(char(Telnet::IAC)).append(char(verb)).append(char(option));
}

} // namespace

QByteArray TelnetOptions::Begin()
{
    QByteArray asked;
    for (const WantedOption &wanted : Wanted) {
        m_sides[size_t(wanted.side)][wanted.option].state = State::Asked;
        asked += Word(wanted.side, wanted.option, true);
    }
    return asked;
}

QByteArray TelnetOptions::Take(quint8 verb, quint8 number)
{
    const Side side = verb == Telnet::DO || verb == Telnet::DONT ? Side::Here : Side::There;
    const bool on = verb == Telnet::DO || verb == Telnet::WILL;
    const bool wanted = IsWanted(side, number);
    Option &option = m_sides[size_t(side)][number];

    const State before = option.state;
    if (on && (wanted || before == State::Asked))
        option.state = State::Yes;
    else if (!on && before != State::No)
        option.state = State::Refused;
    const bool settled = before == State::Asked || before == option.state;
    const bool refuses = on && !wanted;
    if ((settled && !refuses) || option.answers == MostAnswers)
        return {};
    option.answers += 1;
    return Word(side, number, on && wanted);
}
