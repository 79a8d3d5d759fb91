// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ReceiveDetection.h"

#include "WatchSnapshot.h"

#include <algorithm>

namespace
{

/// A window is compacted when it has grown by this many bytes, so that the cost is spread.
constexpr qsizetype CompactAfter = 65536;

} // namespace

ReceiveDetection::ReceiveDetection()
{
    Clear();
}

void ReceiveDetection::Clear()
{
    for (const int direction : {0, 1})
        Clear(direction);
}

void ReceiveDetection::Clear(int direction)
{
    Memory &memory = m_memories[size_t(direction)];
    memory.window = QByteArray(SequenceMatcher::Padding, '\0');
    memory.held = memory.window.size();
}

ReceiveDetection::Result ReceiveDetection::Feed(int direction, QByteArrayView bytes,
                                                const WatchSnapshot &watch)
{
    std::vector<int> detected;
    const qsizetype consumed = Find(direction, bytes, watch, detected);
    Result result = Evaluate(detected, watch);
    result.consumed = consumed;
    return result;
}

qsizetype ReceiveDetection::Find(int direction, QByteArrayView bytes, const WatchSnapshot &watch,
                                 std::vector<int> &detected)
{
    detected.clear();
    if (bytes.isEmpty())
        return 0;
    const SequenceMatcher &matcher = watch.Matcher();
    Memory &memory = m_memories[size_t(direction)];
    Compact(memory);
    const qsizetype oldSize = memory.window.size();
    memory.window.append(bytes);

    qsizetype hit = oldSize;
    if (memory.revision != watch.Revision())
        CheckFirstAfterChange(memory, oldSize, watch, detected);
    if (detected.empty()) {
        const char *const window = memory.window.constData();
        const char *const begin = window + memory.held;
        const char *const end = window + memory.window.size();
        const char *const byte = matcher.FindEnd(begin, window + oldSize, end);
        hit = byte - window;
        if (byte != end)
            matcher.CollectAt(begin, byte, detected);
    }
    std::sort(detected.begin(), detected.end());
    detected.erase(std::unique(detected.begin(), detected.end()), detected.end());

    memory.window.truncate(hit + 1); // keeps all of it when nothing was found
    const qsizetype end = memory.window.size();
    memory.held = detected.empty() ? std::max(memory.held, end - matcher.Longest()) : end;
    return end - oldSize;
}

/// The remembered bytes hold no sequence of the old tables, but may hold some of the new ones
/// anywhere; so every place is searched once, with the newest byte included.
void ReceiveDetection::CheckFirstAfterChange(Memory &memory, qsizetype newest,
                                             const WatchSnapshot &watch, std::vector<int> &found)
{
    memory.held = std::max(memory.held, newest - memory.longest);
    memory.longest = watch.Matcher().Longest();
    memory.revision = watch.Revision();

    const char *const window = memory.window.constData();
    for (qsizetype place = memory.held; place <= newest; ++place)
        watch.Matcher().CollectAt(window + memory.held, window + place, found);
}

void ReceiveDetection::Compact(Memory &memory)
{
    const qsizetype unused = memory.held - SequenceMatcher::Padding;
    if (unused < CompactAfter)
        return;
    memory.window.remove(0, unused);
    memory.held = SequenceMatcher::Padding;
}

ReceiveDetection::Result ReceiveDetection::Evaluate(const std::vector<int> &detected,
                                                    const WatchSnapshot &watch)
{
    Result result;
    result.detected = !detected.empty();
    for (const int index : detected) {
        const WatchSnapshot::Sequence &sequence = watch.At(index);
        result.answer += sequence.answer;
        if (!result.comment.isEmpty() && !sequence.comment.isEmpty())
            result.comment += ' ';
        result.comment += sequence.comment;
        result.names << sequence.name;
    }
    return result;
}
