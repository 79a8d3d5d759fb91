// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SampleThinner.h"
#include "TimeSpread.h"

#include <map>

/// What is said of one key: how often, and how long it took. Times in ns, -1 for none.
struct ResponseRow {
    ResponseKey key;
    qint64 count = 0;    ///< sent, said, received
    qint64 answered = 0; ///< within the limit; always 0 for what is received
    qint64 unanswered =
        0; ///< of some that were sent last, or before a line closed, neither is said
    // Of response times, or of times between what is received.
    qint64 last = -1;
    qint64 least = -1;
    qint64 median = -1;
    qint64 percentile95 = -1;
    qint64 greatest = -1;

    bool operator==(const ResponseRow &) const = default;
};

/// What can be drawn of one key.
struct ResponsePicture {
    TimeSpread spread{};
    QList<ResponseSample> samples{}; ///< some if there are many, in their order
    QList<ResponseSample> misses{};  ///< the same of those without an answer
    ResponseRow row{};
};

/// Counts.
class ResponseStatistics final : public ResponseConsumer
{
  public:
    void Count(const ResponseKey &key) override;
    void Take(const ResponseKey &key, const ResponseSample &sample) override;

    /// By key.
    QList<ResponseRow> Rows() const;
    /// Of nothing that was counted, it is empty.
    ResponsePicture Picture(const ResponseKey &key) const;

  private:
    struct Entry {
        qint64 count = 0;
        qint64 answered = 0;
        qint64 unanswered = 0;
        qint64 last = -1;
        TimeSpread spread;
        SampleThinner samples;
        SampleThinner misses;
    };
    static ResponseRow RowOf(const ResponseKey &key, const Entry &entry);

    std::map<ResponseKey, Entry> m_entries;
};
