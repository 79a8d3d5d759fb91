// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <deque>
#include <optional>

/// What has been heard on both channels, in the one order of it, as far as it is still looked at.
/// A place counts all bytes of both channels; places by channel count those of each.
class HeardBytes
{
  public:
    /// The oldest goes when more memory is needed than this: a MiB in long reads, 80 KiB if every
    /// byte came alone.
    static constexpr qsizetype MostMemory = 4 * 1024 * 1024;

    using Places = std::array<qint64, 2>; ///< by channel

    struct Hit {
        int channel;
        qint64 end;        ///< the place behind its last byte
        qint64 channelEnd; ///< the same, in its channel
        qint64 time;       ///< of its last byte
    };

    void Append(int channel, QByteArrayView bytes, qint64 time);

    /// The place behind the last byte.
    qint64 End() const { return m_end; }
    /// The same by channel.
    Places ChannelEnds() const;
    /// The places by channel at a place.
    Places PlacesAt(qint64 place) const;

    /// The first byte at which the pattern is complete, of what begins at these places or behind
    /// them; on one channel or on any. Searched spares what was searched before; it begins as from.
    std::optional<Hit> Find(const QByteArray &pattern, std::optional<int> channel,
                            const Places &from, Places &searched) const;

    /// The last bytes behind these places, in their order.
    QByteArray Last(qsizetype most, std::optional<int> channel, const Places &from) const;

  private:
    struct Chunk {
        qint64 place;
        qint64 channelPlace;
        qsizetype size;
        qint64 time;
    };
    struct Channel {
        QByteArray bytes;
        qint64 begin = 0; ///< channel place of the first of them
        std::deque<Chunk> chunks;

        qint64 End() const { return begin + bytes.size(); }
        const Chunk &ChunkOf(qint64 channelPlace) const;
        void DropOldest(qsizetype memory);
    };

    std::array<Channel, 2> m_channels;
    qint64 m_end = 0;
};
