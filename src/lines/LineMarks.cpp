// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineMarks.h"

#include <utility>

namespace
{

constexpr char Escape = '\xFF';

} // namespace

void LineMarks::Begin(bool marked, qsizetype unmarkedBytes)
{
    m_marked = marked;
    m_unmarked = marked ? unmarkedBytes : 0;
    m_feeding = false;
    m_held.clear();
}

void LineMarks::Feed(QByteArrayView read)
{
    m_rest = read;
    m_feeding = true;
}

QByteArrayView LineMarks::Take(qsizetype count)
{
    const QByteArrayView taken = m_rest.first(count);
    m_rest = m_rest.sliced(count);
    return taken;
}

std::optional<LineMarks::Piece> LineMarks::Next()
{
    std::optional<Piece> piece = TakePiece();
    m_feeding = piece.has_value();
    return piece;
}

std::optional<LineMarks::Piece> LineMarks::TakePiece()
{
    if (m_rest.isEmpty())
        return std::nullopt;
    if (m_unmarked > 0) {
        const qsizetype count = qMin(m_unmarked, m_rest.size());
        m_unmarked -= count;
        return Piece{Take(count)};
    }
    if (!m_marked || (m_held.isEmpty() && !m_rest.contains(Escape)))
        return Piece{Take(m_rest.size())};

    m_bytes.resize(0);
    while (!m_rest.isEmpty()) {
        if (m_held.isEmpty()) {
            const qsizetype plain = m_rest.indexOf(Escape);
            m_bytes += Take(plain < 0 ? m_rest.size() : plain);
            m_held = Take(qMin<qsizetype>(1, m_rest.size())).toByteArray();
        } else if (const Mark mark = Complete(Take(1).front()); mark != Mark::None) {
            return Piece{m_bytes, mark};
        }
    }
    return m_bytes.isEmpty() ? std::nullopt : std::optional(Piece{m_bytes});
}

/// What no system writes is passed on as it is.
LineMarks::Mark LineMarks::Complete(char next)
{
    if (m_held.size() == 1 && next == '\0') {
        m_held += next;
        return Mark::None;
    }
    const bool whole = std::exchange(m_held, {}).size() == 2;
    if (!whole && next != Escape)
        m_bytes += Escape;
    m_bytes += next;
    if (!whole)
        return Mark::None;
    return next == '\0' ? Mark::DamagedZeroOrBreak : Mark::Damaged;
}

QByteArray LineMarks::TakeHeld()
{
    return m_feeding ? QByteArray() : std::exchange(m_held, {});
}
