// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CapturePages.h"

#include "CaptureFormat.h"

#include <QtEndian>

namespace
{

using namespace CaptureFormat;

qsizetype LengthOfFirst(QByteArrayView blocks)
{
    return qFromLittleEndian<quint32>(blocks.data() + sizeof(quint32));
}

void AppendFiller(QByteArray &blocks, qsizetype length)
{
    const qsizetype start = blocks.size();
    blocks.append(length, '\0');
    char *block = blocks.data() + start;
    qToLittleEndian(quint32(Filler), block);
    qToLittleEndian(quint32(length), block + sizeof(quint32));
    qToLittleEndian(quint32(length), block + length - qsizetype(sizeof(quint32)));
}

/// What is left of a page must have room for a block, or be nothing.
bool IsFillable(qsizetype room)
{
    return room == 0 || room >= BlockFrame;
}

} // namespace

QByteArray CapturePages::Fill(QByteArrayView blocks, qint64 place)
{
    QByteArray filled;
    filled.reserve(blocks.size() + blocks.size() / 8 + PageSize);
    while (!blocks.isEmpty()) {
        const qsizetype length = LengthOfFirst(blocks);
        const auto room = qsizetype(PageSize - (place + filled.size()) % PageSize);
        const bool fits = IsFillable(room - length);
        if (!fits && length <= PageSize && room < PageSize && room >= BlockFrame)
            AppendFiller(filled, room);
        filled.append(blocks.first(length));
        blocks = blocks.sliced(length);
    }
    return filled;
}
