// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringList>

/// The blocks of captures that CaptureEncoder has made, for who cuts and joins them without reading
/// what they say.
namespace CaptureBlocks
{

/// Of the block that the bytes begin with: its length, 0 if it is not whole, negative if it is
/// damaged.
qsizetype LengthOf(QByteArrayView bytes);
quint32 TypeOf(QByteArrayView block);

/// Of a packet.
struct Packet {
    int interface = 0;
    qint64 time = 0;      ///< in nanoseconds since 1970
    qint64 lineBytes = 0; ///< that were sent or received
};
/// Of a block that is whole; another one is no packet and gives zeros.
Packet PacketOf(QByteArrayView block);
/// Of the packet that stands at a place.
void SetInterface(QByteArray &bytes, qsizetype place, int interface);

/// The block of a section or of an interface with comments before its own options.
QByteArray WithComments(QByteArrayView block, const QStringList &comments);

} // namespace CaptureBlocks
