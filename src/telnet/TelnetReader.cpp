// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelnetReader.h"

#include <utility>

namespace
{

constexpr char Escape = char(Telnet::IAC);

} // namespace

QByteArray Telnet::Escaped(QByteArrayView data)
{
    QByteArray escaped = data.toByteArray();
    if (escaped.contains(Escape))
        escaped.replace(QByteArray(1, Escape), QByteArray(2, Escape));
    return escaped;
}

std::optional<TelnetReader::Item> TelnetReader::Next()
{
    if (m_behind)
        return std::exchange(m_behind, {});
    m_data.resize(0);
    if (m_state == State::Data && !m_rest.isEmpty() && !m_rest.contains(Escape))
        return Item{Kind::Data, std::exchange(m_rest, {})};
    std::optional<Item> item = TakeItem();
    if (m_data.isEmpty())
        return item;
    m_behind = item;
    return Item{Kind::Data, m_data};
}

/// Gathers data until something else has come.
std::optional<TelnetReader::Item> TelnetReader::TakeItem()
{
    while (!m_rest.isEmpty()) {
        if (m_state == State::Data) {
            const qsizetype escape = m_rest.indexOf(Escape);
            const qsizetype plain = escape < 0 ? m_rest.size() : escape;
            m_data += m_rest.first(plain);
            m_rest = m_rest.sliced(plain);
            if (m_rest.isEmpty())
                break;
        }
        const quint8 next = quint8(m_rest.front());
        m_rest = m_rest.sliced(1);
        if (auto item = Step(next))
            return item;
    }
    return std::nullopt;
}

std::optional<TelnetReader::Item> TelnetReader::Step(quint8 next)
{
    switch (m_state) {
    case State::Data:
        m_state = State::Command;
        return std::nullopt;
    case State::Command:
        return StepCommand(next);
    case State::Verb:
        m_state = State::Data;
        return Item{Kind::Option, {}, m_verb, next};
    case State::Option:
        m_option = next;
        m_state = State::Subnegotiation;
        return std::nullopt;
    case State::Subnegotiation:
        if (next == Telnet::IAC)
            m_state = State::EndOrEscape;
        else
            Keep(next);
        return std::nullopt;
    case State::EndOrEscape:
        if (next != Telnet::IAC)
            return next == Telnet::SE ? EndSubnegotiation() : StepCommand(next);
        Keep(next);
        m_state = State::Subnegotiation;
        return std::nullopt;
    }
    return std::nullopt;
}

/// A command inside of a subnegotiation ends it: its end has been lost.
std::optional<TelnetReader::Item> TelnetReader::StepCommand(quint8 next)
{
    m_state = State::Data;
    if (next == Telnet::IAC) {
        m_data += Escape;
    } else if (next == Telnet::SB) {
        m_subnegotiation.resize(0);
        m_tooLong = false;
        m_state = State::Option;
    } else if (next >= Telnet::WILL) {
        m_verb = next;
        m_state = State::Verb;
    }
    return std::nullopt;
}

std::optional<TelnetReader::Item> TelnetReader::EndSubnegotiation()
{
    m_state = State::Data;
    if (m_tooLong)
        return std::nullopt;
    return Item{Kind::Subnegotiation, m_subnegotiation, 0, m_option};
}

void TelnetReader::Keep(quint8 next)
{
    m_tooLong = m_tooLong || m_subnegotiation.size() == MostBytesOfASubnegotiation;
    if (!m_tooLong)
        m_subnegotiation += char(next);
}
