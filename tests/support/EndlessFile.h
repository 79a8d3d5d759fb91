// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QByteArray>

#include <algorithm>

/// A capture of any size, without a disk: a head, and the same packets again and again behind it,
/// cut where they begin anew.
class EndlessFile final : public InputDevice
{
  public:
    EndlessFile(const QByteArray &head, const QByteArray &packets, qint64 size)
        : m_head(head), m_packets(packets), m_size(size / packets.size() * packets.size())
    {
    }

    Given ReadAt(qint64 place, char *bytes, qint64 most) const override
    {
        most = std::clamp<qint64>(Size() - place, 0, most);
        for (qint64 i = 0; i < most;) {
            const qint64 at = place + i - m_head.size();
            const QByteArrayView from =
                at < 0 ? QByteArrayView(m_head).sliced(place + i)
                       : QByteArrayView(m_packets).sliced(at % m_packets.size());
            const qint64 count = std::min<qint64>(from.size(), most - i);
            std::copy_n(from.data(), count, bytes + i);
            i += count;
        }
        return {most, {}};
    }
    qint64 Size() const override { return m_head.size() + m_size; }

  private:
    const QByteArray m_head, m_packets;
    const qint64 m_size;
};
