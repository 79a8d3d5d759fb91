// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureBytes.h"

#include <algorithm>

namespace
{

constexpr qsizetype PieceSize = 256 * 1024; ///< stays in the processor's cache

} // namespace

QByteArrayView CaptureBytes::Load(qint64 place, qsizetype count)
{
    m_piece.resize(std::max(PieceSize, count));
    m_place = place;
    const InputDevice::Given given = m_file.ReadAt(place, m_piece.data(), m_piece.size());
    if (given.result.Failed())
        m_state = given.result;
    m_piece.resize(given.count);
    return QByteArrayView(m_piece).first(std::min(count, m_piece.size()));
}
