// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceMatcher.h"

#include <algorithm>
#include <cstring>

namespace
{

constexpr uint32_t FilterBits = 65536;
constexpr uint32_t NoNode = 0; // the root is nobody's child

/// Fibonacci hashing (Knuth, The Art of Computer Programming 6.4): the high half of the product.
uint32_t FilterPlace(uint32_t lastBytes)
{
    return (lastBytes * 2654435769U) >> 16;
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
    BuildFilter(patterns);
    BuildTree(sorted);
}

void SequenceMatcher::BuildFilter(const std::vector<Pattern> &patterns)
{
    m_filter.assign(FilterBits / 64, 0);
    qsizetype shortest = Padding;
    for (const Pattern &pattern : patterns)
        shortest = std::min(shortest, pattern.bytes.size());
    m_filterBytes = shortest;
    m_filterMask = MaskOfNewest(shortest);
    for (const Pattern &pattern : patterns) {
        QByteArray tail(Padding, '\0');
        const auto newest = pattern.bytes.last(shortest);
        std::copy(newest.begin(), newest.end(), tail.end() - shortest);
        const uint32_t place = FilterPlace(LastFourBytes(&tail.back()) & m_filterMask);
        m_filter[place / 64] |= uint64_t(1) << (place % 64);
    }
}

void SequenceMatcher::BuildTree(const std::vector<Reversed> &sorted)
{
    m_nodes.assign(1, Node{});
    m_labels.clear();
    m_ends.clear();
    m_rootChild.fill(NoNode);
    if (sorted.empty())
        return;

    std::vector<Pending> open = {{0, 0, sorted.size(), 0}};
    while (!open.empty()) {
        const Pending next = open.back();
        open.pop_back();
        Expand(sorted, next, open);
    }
    const Node &root = m_nodes.front();
    for (uint32_t i = root.firstChild; i < root.firstChild + root.childCount; ++i)
        m_rootChild[uchar(m_labels[m_nodes[i].label])] = i;
}

void SequenceMatcher::Expand(const std::vector<Reversed> &sorted, const Pending &pending,
                             std::vector<Pending> &open)
{
    // The root's label stays empty, so that its children can be looked up by their first byte.
    const QByteArray &lowest = sorted[pending.first].bytes;
    const qsizetype length =
        pending.node == 0 ? 0 : CommonLength(lowest, sorted[pending.last - 1].bytes, pending.depth);
    const qsizetype depth = pending.depth + length;

    Node node;
    node.label = uint32_t(m_labels.size());
    node.labelLength = uint32_t(length);
    m_labels.append(lowest.constData() + pending.depth, length);

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
        std::partition_point(first, last, [&](const Node &n) { return m_labels[n.label] < byte; });
    return child != last && m_labels[child->label] == byte ? &*child : nullptr;
}

bool SequenceMatcher::PassesFilter(const char *byte) const
{
    const uint32_t place = FilterPlace(LastFourBytes(byte) & m_filterMask);
    return (m_filter[place / 64] >> (place % 64)) & 1;
}

bool SequenceMatcher::EndsAt(const char *begin, const char *byte, std::vector<int> *indexes) const
{
    const uint32_t first = m_rootChild[uchar(*byte)];
    const Node *node = first == NoNode ? nullptr : &m_nodes[first];
    const char *unread = byte + 1; // everything from here on has been walked
    while (node && unread - begin >= qsizetype(node->labelLength)) {
        const char *label = m_labels.constData() + node->label;
        const char *const labelEnd = label + node->labelLength;
        while (label != labelEnd && *label == unread[-1]) {
            ++label;
            --unread;
        }
        if (label != labelEnd)
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
    const char *byte = std::max(from, begin + m_filterBytes - 1);
    for (; byte < end; ++byte) {
        if (PassesFilter(byte) && EndsAt(begin, byte, nullptr))
            return byte;
    }
    return end;
}

void SequenceMatcher::CollectAt(const char *begin, const char *byte,
                                std::vector<int> &indexes) const
{
    EndsAt(begin, byte, &indexes);
}
