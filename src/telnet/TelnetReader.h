// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// The bytes that telnet gives a meaning (RFC 854).
namespace Telnet
{

constexpr quint8 SE = 240;
constexpr quint8 SB = 250;
constexpr quint8 WILL = 251;
constexpr quint8 WONT = 252;
constexpr quint8 DO = 253;
constexpr quint8 DONT = 254;
constexpr quint8 IAC = 255;

/// Options.
constexpr quint8 Binary = 0;
constexpr quint8 SuppressGoAhead = 3;
constexpr quint8 ComPort = 44;

/// Data as they travel.
QByteArray Escaped(QByteArrayView data);

} // namespace Telnet

/// Takes a telnet stream apart, wherever reads may have cut it. What has no meaning is left out.
class TelnetReader
{
  public:
    enum class Kind { Data, Option, Subnegotiation };
    struct Item {
        Kind kind;
        QByteArrayView bytes; ///< data, or a subnegotiation behind its option; until the next call
        quint8 verb = 0;      ///< of an option: WILL, WONT, DO or DONT
        quint8 option = 0;
    };

    /// Longer ones are left out.
    static constexpr qsizetype MostBytesOfASubnegotiation = 1024;

    /// What a read brought; it must live until Next has found nothing more in it.
    void Feed(QByteArrayView read) { m_rest = read; }
    std::optional<Item> Next();

  private:
    enum class State { Data, Command, Verb, Option, Subnegotiation, EndOrEscape };

    std::optional<Item> TakeItem();
    std::optional<Item> Step(quint8 next);
    std::optional<Item> StepCommand(quint8 next);
    std::optional<Item> EndSubnegotiation();
    void Keep(quint8 next);

    State m_state = State::Data;
    QByteArrayView m_rest;
    QByteArray m_data;
    std::optional<Item> m_behind; ///< comes behind the data that were before it
    QByteArray m_subnegotiation;
    bool m_tooLong = false;
    quint8 m_verb = 0;
    quint8 m_option = 0;
};
