// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ResponseKey.h"
#include "ResponseQuestion.h"
#include "TelegramScan.h"

#include <array>
#include <map>
#include <memory>
#include <set>

/// Finds who answered whom in a source, and when. A question is what was sent at once, or what a
/// channel said; the answer is the first that is received behind it, on the same channel or on the
/// other one. A question in between, or a limit, ends the waiting.
class ResponseScan final
{
  public:
    ResponseScan(std::shared_ptr<const TelegramSource> source, const TelegramRule &rule,
                 const ResponseLimits &limits);

    /// A capture may have more names than that; the others are counted together, as OtherNames.
    static constexpr size_t MostKeys = 4096;
    static constexpr const char *OtherNames = "all others";

    /// Tells what there is by now. False if there may be more, behind that many reads and writes.
    bool Advance(ResponseConsumer &consumer, qint64 most);

    /// Questions that wait for an answer, and had the time that is the limit at a time on the wall.
    QList<ResponseKey> Overdue(qint64 wall) const;

    qint64 PartNumber() const { return m_scan.PartNumber(); }
    qint64 Read() const { return m_scan.Read(); } ///< of the part, in bytes
    bool TwoChannels() const { return m_twoChannels; }

  private:
    struct Question {
        bool isOpen = false;
        ResponseKey key;
        ResponseSample told; ///< if nothing answers it
        qint64 end = 0;      ///< of its bytes, by a clock that is never set
        qint64 endWall = 0;
    };
    /// Where bytes stand.
    struct Moment {
        int channel = 0;
        qint64 number = 0;
        qint64 time = 0;
        qint64 wall = 0;
    };

    void TakeBytes(ResponseConsumer &consumer);
    void TakeOther();
    void TakeSent(ResponseConsumer &consumer, const Moment &at, bool begins,
                  const TrafficEvent &said);
    void TakeReceived(ResponseConsumer &consumer, const Moment &at, bool begins,
                      const TrafficEvent &said);
    void Detect(ResponseConsumer &consumer, const Moment &at, const QByteArray &name);
    void Ask(ResponseConsumer &consumer, Question &question, ResponseKey key, const Moment &at);
    ResponseKey KeyOf(ResponseKey::Kind kind, int channel, const QByteArray &name);
    static void Extend(Question &question, const Moment &at);
    void Answer(ResponseConsumer &consumer, Question &question, const Moment &at) const;
    void Expire(ResponseConsumer &consumer, qint64 time);

    TelegramScan m_scan;
    const ResponseLimits m_limits;
    bool m_twoChannels = false;
    std::array<Question, 2> m_sent;   ///< by channel
    std::array<Question, 2> m_speech; ///< by who speaks
    std::set<ResponseKey> m_keys;
    std::map<ResponseKey, qint64> m_detected; ///< when last
};
