// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceMatcher.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace
{

constexpr uint32_t FilterBits = 65536;
constexpr uint32_t NoNode = 0;

/// Fibonacci hashing (Knuth, The Art of Computer Programming 6.4): the high bits of the product are
/// what counts.
uint32_t Hash(uint32_t tail)
{
    return tail * 2654435769U;
}

uint32_t FilterPlace(uint32_t tail)
{
    return Hash(tail) >> 16;
}

uint32_t LastFourBytes(const char *byte)
{
    uint32_t value = 0;
    std::memcpy(&value, byte - 3, sizeof value);
    return value;
}

/// Takes the given number of bytes at the newest end of LastFourBytes.
uint32_t MaskOfNewest(qsizetype count)
{
    std::array<unsigned char, 4> bytes{};
    std::fill(bytes.end() - count, bytes.end(), 0xFF);
    uint32_t mask = 0;
    std::memcpy(&mask, bytes.data(), sizeof mask);
    return mask;
}

qsizetype CommonLength(const QByteArray &a, const QByteArray &b, qsizetype from)
{
    const auto differ = std::mismatch(a.begin() + from, a.end(), b.begin() + from, b.end());
    return differ.first - (a.begin() + from);
}

} // namespace

void SequenceMatcher::Build(const std::vector<Pattern> &patterns)
{
    m_longest = 0;
    std::vector<Reversed> sorted;
    sorted.reserve(patterns.size());
    for (const Pattern &pattern : patterns) {
        m_longest = std::max(m_longest, pattern.bytes.size());
        QByteArray bytes = pattern.bytes.toByteArray();
        std::reverse(bytes.begin(), bytes.end());
        sorted.push_back({bytes, pattern.index});
    }
    std::sort(sorted.begin(), sorted.end(), [](const Reversed &a, const Reversed &b) {
        return std::lexicographical_compare(a.bytes.begin(), a.bytes.end(), b.bytes.begin(),
                                            b.bytes.end());
    });
    m_tailBytes = Padding;
    for (const Pattern &pattern : patterns)
        m_tailBytes = std::min(m_tailBytes, pattern.bytes.size());
    m_tailMask = MaskOfNewest(m_tailBytes);
    BuildTree(sorted);
}

void SequenceMatcher::BuildTree(const std::vector<Reversed> &sorted)
{
    m_nodes.assign(1, Node{});
    m_labels.clear();
    m_ends.clear();
    m_filter.assign(FilterBits / 64, 0);
    // At most half full, so that the next place is rarely needed.
    const int bits = int(std::bit_width(sorted.size())) + 1;
    m_tails.assign(size_t(1) << bits, Tail{});
    m_tailShift = 32 - bits;

    std::vector<Pending> open;
    for (size_t first = 0; first < sorted.size();) {
        const QByteArray tail = sorted[first].bytes.first(m_tailBytes);
        size_t last = first;
        while (last < sorted.size() && sorted[last].bytes.startsWith(tail))
            ++last;
        QByteArray inText(Padding, '\0');
        std::copy(tail.begin(), tail.end(), inText.rbegin());
        PutTail(LastFourBytes(&inText.back()) & m_tailMask, uint32_t(m_nodes.size()));
        open.push_back({uint32_t(m_nodes.size()), first, last, m_tailBytes});
        m_nodes.emplace_back();
        first = last;
    }
    while (!open.empty()) {
        const Pending next = open.back();
        open.pop_back();
        Expand(sorted, next, open);
    }
}

void SequenceMatcher::PutTail(uint32_t bytes, uint32_t node)
{
    const uint32_t place = FilterPlace(bytes);
    m_filter[place / 64] |= uint64_t(1) << (place % 64);
    size_t slot = Hash(bytes) >> m_tailShift;
    while (m_tails[slot].node != NoNode)
        slot = (slot + 1) % m_tails.size();
    m_tails[slot] = {bytes, node};
}

void SequenceMatcher::Expand(const std::vector<Reversed> &sorted, const Pending &pending,
                             std::vector<Pending> &open)
{
    const QByteArray &lowest = sorted[pending.first].bytes;
    const qsizetype length = CommonLength(lowest, sorted[pending.last - 1].bytes, pending.depth);
    const qsizetype depth = pending.depth + length;

    Node node;
    node.label = uint32_t(m_labels.size());
    node.labelLength = uint32_t(length);
    node.lookedUpBy = length > 0 ? lowest[pending.depth] : '\0';
    m_labels.append(lowest.constData() + pending.depth, length);
    std::reverse(m_labels.end() - length, m_labels.end());

    node.firstEnd = uint32_t(m_ends.size());
    size_t next = pending.first;
    for (; next < pending.last && sorted[next].bytes.size() == depth; ++next)
        m_ends.push_back(sorted[next].index);
    node.endCount = uint32_t(m_ends.size()) - node.firstEnd;

    node.firstChild = uint32_t(m_nodes.size());
    while (next < pending.last) {
        const size_t groupStart = next;
        const char byte = sorted[next].bytes[depth];
        while (next < pending.last && sorted[next].bytes[depth] == byte)
            ++next;
        open.push_back({uint32_t(m_nodes.size()), groupStart, next, depth});
        m_nodes.emplace_back();
        ++node.childCount;
    }
    m_nodes[pending.node] = node;
}

const SequenceMatcher::Node *SequenceMatcher::ChildFor(const Node &node, char byte) const
{
    const auto first = m_nodes.begin() + node.firstChild;
    const auto last = first + node.childCount;
    // QByteArray compares bytes as signed characters, and so was the tree sorted.
    const auto child =
        std::partition_point(first, last, [&](const Node &n) { return n.lookedUpBy < byte; });
    return child != last && child->lookedUpBy == byte ? &*child : nullptr;
}

bool SequenceMatcher::PassesFilter(uint32_t tail) const
{
    const uint32_t place = FilterPlace(tail);
    return (m_filter[place / 64] >> (place % 64)) & 1;
}

/// Of the tree for a tail.
uint32_t SequenceMatcher::FirstNode(uint32_t tail) const
{
    size_t slot = Hash(tail) >> m_tailShift;
    while (m_tails[slot].bytes != tail && m_tails[slot].node != NoNode)
        slot = (slot + 1) % m_tails.size();
    return m_tails[slot].node;
}

bool SequenceMatcher::EndsAt(const char *begin, const char *byte, std::vector<int> *indexes) const
{
    const uint32_t first = FirstNode(LastFourBytes(byte) & m_tailMask);
    const Node *node = first == NoNode ? nullptr : &m_nodes[first];
    const char *unread = byte + 1 - m_tailBytes; // everything from here on has been walked
    while (node && unread - begin >= qsizetype(node->labelLength)) {
        unread -= node->labelLength;
        if (std::memcmp(unread, m_labels.constData() + node->label, node->labelLength) != 0)
            return false;
        if (node->endCount > 0) {
            if (!indexes)
                return true;
            indexes->insert(indexes->end(), m_ends.begin() + node->firstEnd,
                            m_ends.begin() + node->firstEnd + node->endCount);
        }
        node = unread > begin ? ChildFor(*node, unread[-1]) : nullptr;
    }
    return false;
}

const char *SequenceMatcher::FindEnd(const char *begin, const char *from, const char *end) const
{
    if (m_longest == 0)
        return end;
    const char *byte = std::max(from, begin + m_tailBytes - 1);
    for (; byte < end; ++byte) {
        if (PassesFilter(LastFourBytes(byte) & m_tailMask) && EndsAt(begin, byte, nullptr))
            return byte;
    }
    return end;
}

void SequenceMatcher::CollectAt(const char *begin, const char *byte,
                                std::vector<int> &indexes) const
{
    if (byte - begin + 1 >= m_tailBytes)
        EndsAt(begin, byte, &indexes);
}
