// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelnetReader.h"

#include <array>

/// Which telnet options are in force on either side (RFC 855). Wants COM-PORT here, and binary and
/// no go-ahead on both sides; refuses all else. Answers a demand so often at most that two programs
/// that disagree come to an end.
class TelnetOptions
{
  public:
    enum class Side { Here, There };

    static constexpr int MostAnswers = 16;

    /// What is asked for at the beginning.
    QByteArray Begin();
    /// Takes a demand; the answer, empty if none is due.
    QByteArray Take(quint8 verb, quint8 option);

    bool InForce(Side side, quint8 option) const { return StateOf(side, option) == State::Yes; }
    /// The other side said no.
    bool Refused(Side side, quint8 option) const { return StateOf(side, option) == State::Refused; }

  private:
    enum class State : quint8 { No, Asked, Yes, Refused };
    struct Option {
        State state = State::No;
        quint8 answers = 0;
    };

    State StateOf(Side side, quint8 option) const { return m_sides[size_t(side)][option].state; }

    std::array<std::array<Option, 256>, 2> m_sides;
};
