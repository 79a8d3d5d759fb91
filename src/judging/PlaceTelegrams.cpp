// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PlaceTelegrams.h"

#include "CaptureRemarks.h"
#include "CaptureTraffic.h"
#include "PlaceRows.h"
#include "PlainText.h"

#include <algorithm>
#include <limits>

namespace
{

using Kind = TrafficEvent::Kind;

constexpr qint64 Behind = 8; ///< telegrams behind the place
constexpr qint64 Most = 100; ///< in all; a place may be spread over more
/// Of a long telegram these bytes are shown before what belongs to the place.
constexpr qsizetype BytesBefore = 16;

/// What a telegram is, where its remarks do not say it.
QString WordsOf(const TrafficEvent &event)
{
    switch (event.kind) {
    case Kind::Received:
        return QStringLiteral("received");
    case Kind::Sent:
        return QStringLiteral("sent");
    case Kind::Damaged:
        return QStringLiteral("damaged byte");
    case Kind::Break:
        return QStringLiteral("break");
    case Kind::Overrun:
        return QStringLiteral("bytes lost by the system");
    case Kind::ModemLines:
        return QStringLiteral("modem lines");
    default:
        return {};
    }
}

QString WhatText(const TrafficEvent &event)
{
    QStringList words;
    if (const QString known = WordsOf(event); !known.isEmpty())
        words << known;
    // The names on bytes are those of the sequences of that time, not of the judged project.
    if (event.kind != Kind::Received && event.kind != Kind::Sent)
        words << CaptureRemarks::Of(event);
    return PlainText(words.join(QStringLiteral(", ")));
}

/// The part of a telegram's bytes that belongs to the place.
struct Part {
    qsizetype begin = 0;
    qsizetype end = 0;
};

Part PartOf(const JudgedPlace &place, const PlaceTelegram &telegram, const CapturePacket &packet)
{
    if (packet.port != place.channel || CaptureTraffic::KindOf(packet) != Kind::Received ||
        telegram.number < place.first.packet || telegram.number > place.last.packet)
        return {};
    const qsizetype size = packet.bytes.size();
    return {telegram.number == place.first.packet ? std::min(place.first.byte, size) : 0,
            telegram.number == place.last.packet ? std::min(place.last.byte + 1, size) : size};
}

void ShowBytes(const CapturePacket &packet, const Part &part, PlaceTelegram &telegram)
{
    const qsizetype begin = std::max<qsizetype>(0, part.begin - BytesBefore);
    const QByteArrayView bytes = packet.bytes.sliced(begin);
    std::vector<bool> marks(size_t(part.end - begin));
    std::fill(marks.begin() + (part.begin - begin), marks.end(), true);
    const QString front = begin > 0 ? QStringLiteral("... ") : QString();
    telegram.isHere = part.end > part.begin;
    telegram.hex = front + PlaceRows::HexText(bytes, marks);
    telegram.text = front + PlaceRows::AsciiText(bytes, marks);
}

} // namespace

PlaceTelegrams PlaceTelegrams::Around(const JudgedPlace &place, const InputDevice &file)
{
    PlaceTelegrams around;
    CaptureReader reader(file);
    around.result = reader.Begin();
    if (around.result.Failed())
        return around;
    reader.GoTo(place.ahead);
    CaptureTraffic traffic(reader);
    CapturePacket packet;
    bool isThere = false;
    for (qint64 number = place.aheadPacket;
         number <= place.last.packet + Behind && number < place.aheadPacket + Most; ++number) {
        if (reader.Next(packet) != CaptureReader::Step::Packet)
            break;
        isThere |= packet.place == place.first.place;
        PlaceTelegram telegram;
        telegram.number = number;
        telegram.time = packet.time;
        telegram.channel = packet.port;
        TrafficEvent event;
        traffic.Take(packet, event);
        telegram.what = WhatText(event);
        if (event.kind == Kind::Received || event.kind == Kind::Sent)
            ShowBytes(packet, PartOf(place, telegram, packet), telegram);
        around.telegrams << telegram;
    }
    if (!isThere)
        around.result = Failure{QStringLiteral("The capture has been changed since it was judged")};
    return around;
}
