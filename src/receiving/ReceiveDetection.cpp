// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ReceiveDetection.h"

#include "MdSequenceEdition.h"

#include <algorithm>

namespace
{

/// A window is compacted when it has grown by this many bytes, so that the cost is spread.
constexpr qsizetype CompactAfter = 65536;

} // namespace

ReceiveDetection::ReceiveDetection(const MdSequenceEdition &tables)
    : m_tables(tables), m_builtRevision(tables.Revision() - 1)
{
    Clear();
}

void ReceiveDetection::Clear()
{
    for (Memory &memory : m_memories) {
        memory.window = QByteArray(SequenceMatcher::Padding, '\0');
        memory.held = memory.window.size();
    }
}

ReceiveDetection::Result ReceiveDetection::Feed(int direction, QByteArrayView bytes, CommMode mode)
{
    if (bytes.isEmpty())
        return {};
    RebuildIfChanged();
    Memory &memory = m_memories[size_t(direction)];
    Compact(memory);
    const qsizetype oldSize = memory.window.size();
    memory.window.append(bytes);

    std::vector<int> found;
    qsizetype hit = oldSize;
    if (memory.revision != m_builtRevision)
        found = CheckFirstAfterChange(memory, oldSize);
    if (found.empty()) {
        const char *const window = memory.window.constData();
        const char *const begin = window + memory.held;
        const char *const end = window + memory.window.size();
        const char *const byte = m_matcher.FindEnd(begin, window + oldSize, end);
        hit = byte - window;
        if (byte != end)
            m_matcher.CollectAt(begin, byte, found);
    }

    memory.window.truncate(hit + 1); // keeps all of it when nothing was found
    const qsizetype end = memory.window.size();
    memory.held = found.empty() ? std::max(memory.held, end - m_matcher.Longest()) : end;
    Result result = Evaluate(std::move(found), mode);
    result.consumed = end - oldSize;
    return result;
}

void ReceiveDetection::RebuildIfChanged()
{
    if (m_builtRevision == m_tables.Revision())
        return;
    std::vector<SequenceMatcher::Pattern> patterns;
    for (int i = 0; i < m_tables.ReceiveCount(); ++i) {
        const ReceiveSequence &record = m_tables.ReceiveAt(i);
        if (record.IsWatched())
            patterns.push_back({record.Sequence, i});
    }
    m_matcher.Build(patterns);
    m_builtRevision = m_tables.Revision();
}

/// The remembered bytes hold no sequence of the old tables, but may hold some of the new ones
/// anywhere; so every place is searched once, with the newest byte included.
std::vector<int> ReceiveDetection::CheckFirstAfterChange(Memory &memory, qsizetype newest) const
{
    memory.held = std::max(memory.held, newest - memory.longest);
    memory.longest = m_matcher.Longest();
    memory.revision = m_builtRevision;

    std::vector<int> found;
    const char *const window = memory.window.constData();
    for (qsizetype place = memory.held; place <= newest; ++place)
        m_matcher.CollectAt(window + memory.held, window + place, found);
    return found;
}

void ReceiveDetection::Compact(Memory &memory) const
{
    const qsizetype unused = memory.held - SequenceMatcher::Padding;
    if (unused < CompactAfter)
        return;
    memory.window.remove(0, unused);
    memory.held = SequenceMatcher::Padding;
}

ReceiveDetection::Result ReceiveDetection::Evaluate(std::vector<int> detected, CommMode mode) const
{
    std::sort(detected.begin(), detected.end());
    detected.erase(std::unique(detected.begin(), detected.end()), detected.end());

    Result result;
    result.detected = !detected.empty();
    for (const int index : detected) {
        const ReceiveSequence &record = m_tables.ReceiveAt(index);
        const SendSequence *answer = m_tables.AnswerOf(record);
        if (answer && !record.AnswerName.isEmpty() && MaySend(mode))
            result.answer += answer->Sequence;
        if (!result.comment.isEmpty() && !record.Comment.isEmpty())
            result.comment += ' ';
        result.comment += record.Comment;
    }
    return result;
}
