// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

#include <tuple>

/// Whose times are counted together.
struct ResponseKey {
    enum class Kind {
        Speech,   ///< a channel speaks, and the other one answers
        ByHand,   ///< something was sent by hand
        Answer,   ///< something was sent by itself
        Detection ///< a sequence was received
    };
    Kind kind = Kind::ByHand;
    int channel = 0; ///< 0 or 1
    /// Of the sequence sent or received, or of those that were answered; stored characters. Empty:
    /// what is sent is no sequence.
    QByteArray name{};

    bool operator==(const ResponseKey &) const = default;
    bool operator<(const ResponseKey &other) const
    {
        return std::tie(kind, channel, name) < std::tie(other.kind, other.channel, other.name);
    }
};

/// What one question, or one detection, came to.
struct ResponseSample {
    qint64 number = 0; ///< of the telegram that answers, of one that nothing answers, or detected
    qint64 wall = 0;   ///< of the same, in ns since 1970
    qint64 time = -1;  ///< to the answer, or since the detection before, in ns; -1: no answer

    bool IsAnswered() const { return time >= 0; }
    bool operator==(const ResponseSample &) const = default;
};

/// Is told of all that is counted.
class ResponseConsumer
{
  public:
    virtual ~ResponseConsumer() = default;

    /// It was sent, said or received once more. What became of it is told by Take, or never.
    virtual void Count(const ResponseKey &key) = 0;
    virtual void Take(const ResponseKey &key, const ResponseSample &sample) = 0;
};
