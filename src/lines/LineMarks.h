// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

/// Takes the system's marks out of the bytes of a line: FF 00 x stands for a byte x that came
/// damaged, FF 00 00 also for a break, FF FF for the byte FF. A mark may be cut by the end of a
/// read; what follows completes it.
class LineMarks
{
  public:
    enum class Mark { None, Damaged, DamagedZeroOrBreak };

    /// Bytes as they came over the line, and what happened at their end: a damaged byte is the last
    /// of them. So is the 0 that may be a break, which brought no byte.
    struct Piece {
        QByteArrayView bytes; ///< valid until the next call
        Mark mark = Mark::None;
    };

    /// At the opening of a line. Its system had received so many bytes before it began to mark.
    void Begin(bool marked, qsizetype unmarkedBytes);

    /// What a read brought; it must live until Next has found nothing more in it.
    void Feed(QByteArrayView read);
    std::optional<Piece> Next();

    /// The beginning of a mark whose end has not come, as it is; nothing is held after it. Empty
    /// also while Next has more to give.
    QByteArray TakeHeld();

  private:
    std::optional<Piece> TakePiece();
    QByteArrayView Take(qsizetype count);
    Mark Complete(char next);

    bool m_marked = false;
    qsizetype m_unmarked = 0; ///< bytes that come before the first that may be marked
    bool m_feeding = false;
    QByteArrayView m_rest;
    QByteArray m_held; ///< beginning of a mark
    QByteArray m_bytes;
};
