// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QByteArray>
#include <QByteArrayView>

/// A file that is read from front to back, of which a piece of bounded size is in memory.
class CaptureBytes final
{
  public:
    explicit CaptureBytes(const InputDevice &file) : m_file(file) {}

    /// The bytes of a place, fewer where the file ends or cannot be read. Valid until the next
    /// call.
    QByteArrayView At(qint64 place, qsizetype count)
    {
        const qint64 offset = place - m_place;
        if (offset >= 0 && offset + count <= m_piece.size())
            return QByteArrayView(m_piece).sliced(offset, count);
        return Load(place, count);
    }

    /// What is in memory from a place on, without asking the file; maybe nothing.
    QByteArrayView HeldFrom(qint64 place) const
    {
        const qint64 offset = place - m_place;
        return offset >= 0 && offset <= m_piece.size() ? QByteArrayView(m_piece).sliced(offset)
                                                       : QByteArrayView();
    }

    /// Failed once the system could not read.
    const Result &State() const { return m_state; }

  private:
    QByteArrayView Load(qint64 place, qsizetype count);

    const InputDevice &m_file;
    QByteArray m_piece;
    qint64 m_place = 0; ///< of the piece in the file
    Result m_state;
};
