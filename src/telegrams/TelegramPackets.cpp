// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramPackets.h"

#include <algorithm>
#include <limits>
#include <utility>

/// A part of which more is there each time it is asked for, and nothing that is not whole.
class TelegramPackets::PartFile final : public InputDevice
{
  public:
    explicit PartFile(std::unique_ptr<InputDevice> file) : m_file(std::move(file)) {}

    Given ReadAt(qint64 place, char *bytes, qint64 most) const override
    {
        return m_file->ReadAt(place, bytes, std::clamp<qint64>(size - place, 0, most));
    }
    qint64 Size() const override { return size; }

    void TakeAll() { size = m_file->Size(); }

    qint64 size = 0;

  private:
    std::unique_ptr<InputDevice> m_file;
};

TelegramPackets::TelegramPackets(std::shared_ptr<const TelegramSource> source)
    : m_source(std::move(source))
{
}

TelegramPackets::~TelegramPackets() = default;

void TelegramPackets::GoTo(const TelegramPlace &place)
{
    m_isSpoilt = false;
    if (place.part != m_number || !m_reader) {
        TelegramSource::Part part = {place.part, std::numeric_limits<qint64>::max()};
        for (const TelegramSource::Part &each : m_source->Parts()) {
            if (each.number == part.number)
                part = each;
        }
        OpenPart(part);
    }
    if (m_reader && place.isMarked)
        m_reader->GoTo(place.mark);
}

TelegramPackets::Step TelegramPackets::NextOfParts(CapturePacket &packet)
{
    for (;;) {
        const QList<TelegramSource::Part> parts = m_source->Parts();
        const bool isThere = TakeSizes(parts);
        if (m_reader && !m_isSpoilt) {
            const CaptureReader::Step step = m_reader->Next(packet);
            if (step == CaptureReader::Step::Packet)
                return Step::Packet;
            if (step == CaptureReader::Step::Damaged)
                return Spoil(m_reader->Damage().cause);
        }
        if (m_number >= 0 && !m_isSpoilt && !m_reader)
            return Spoil(m_cause);
        const auto next =
            std::find_if(parts.begin(), parts.end(), [this](const TelegramSource::Part &part) {
                return part.number > m_number;
            });
        if (next == parts.end())
            return Step::End;
        if (m_number >= 0 && !isThere && !m_isSpoilt && !m_source->Follows(m_number, next->number))
            return Spoil(QStringLiteral("A part of the record went away before it was read"));
        OpenPart(*next);
    }
}

/// Parts grow. False if the present one has gone, of which all that there ever was can be read.
bool TelegramPackets::TakeSizes(const QList<TelegramSource::Part> &parts)
{
    for (const TelegramSource::Part &part : parts) {
        if (part.number != m_number)
            continue;
        if (m_file)
            m_file->size = part.size;
        return true;
    }
    if (m_file)
        m_file->TakeAll();
    return false;
}

/// On failure there is no reader, and Cause says why.
void TelegramPackets::OpenPart(const TelegramSource::Part &part)
{
    m_version = PortsVersion() + 1;
    m_reader.reset();
    m_file.reset();
    m_number = part.number;
    m_isSpoilt = false;
    if (m_number < 0)
        return;
    FileSystem::Opened opened = m_source->Open(part.number);
    if (!opened.device) {
        m_cause = opened.result.Cause();
        return;
    }
    m_file = std::make_unique<PartFile>(std::move(opened.device));
    m_file->size = part.size;
    m_reader.emplace(*m_file);
    if (const Result begun = m_reader->Begin(); begun.Failed()) {
        m_cause = begun.Cause();
        m_reader.reset();
    }
}

TelegramPackets::Step TelegramPackets::Spoil(const QString &cause)
{
    m_cause = cause;
    m_isSpoilt = true;
    return Step::Unreadable;
}

TelegramPlace TelegramPackets::PlaceOf(const CapturePacket &packet) const
{
    TelegramPlace place;
    place.part = m_number;
    place.wall = packet.time;
    if (m_reader) {
        place.isMarked = true;
        place.mark = m_reader->MarkOf(packet);
    }
    return place;
}
