// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureJoiner.h"

#include "CaptureBlocks.h"
#include "CaptureFormat.h"
#include "CaptureRemarks.h"

#include <utility>

using namespace CaptureFormat;

qsizetype CaptureJoiner::Append(QByteArray &joined, QByteArrayView bytes)
{
    qsizetype taken = 0;
    qsizetype length = CaptureBlocks::LengthOf(bytes);
    for (; length > 0; length = CaptureBlocks::LengthOf(bytes.sliced(taken))) {
        AppendBlock(joined, bytes.sliced(taken, length));
        taken += length;
    }
    return taken > 0 ? taken : length;
}

void CaptureJoiner::AppendBlock(QByteArray &joined, QByteArrayView block)
{
    switch (CaptureBlocks::TypeOf(block)) {
    case SectionHeader:
        m_told.clear();
        if (std::exchange(m_begun, true))
            break;
        joined += CaptureBlocks::WithComments(block, m_notes);
        break;
    case InterfaceDescription:
        m_told << block.toByteArray();
        break;
    case EnhancedPacket:
        if (m_told != m_inForce)
            AppendInterfaces(joined);
        joined += block;
        CaptureBlocks::SetInterface(joined, joined.size() - block.size(),
                                    m_first + CaptureBlocks::PacketOf(block).interface);
        break;
    default:
        break;
    }
}

void CaptureJoiner::AppendInterfaces(QByteArray &joined)
{
    for (qsizetype channel = 0; channel < m_told.size(); ++channel)
        joined += m_count == 0 ? m_told[channel]
                               : CaptureBlocks::WithComments(
                                     m_told[channel], {CaptureRemarks::OfChannel(int(channel))});
    m_first = m_count;
    m_count += int(m_told.size());
    m_inForce = m_told;
}
