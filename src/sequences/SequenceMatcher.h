// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <array>
#include <cstdint>
#include <vector>

/// Finds which of many byte sequences end at a place of a text. Inside: a radix tree of the
/// reversed sequences that is walked backward from the newest byte, behind a bit filter on the
/// last bytes, so that the cost of a byte hardly depends on the number of sequences.
class SequenceMatcher
{
  public:
    struct Pattern {
        QByteArrayView bytes; ///< not empty
        int index;            ///< what a match reports
    };

    /// Bytes that must be readable in front of every text handed in; their values do not matter.
    static constexpr int Padding = 4;

    SequenceMatcher() { Build({}); }

    void Build(const std::vector<Pattern> &patterns);

    /// Length of the longest pattern, 0 without patterns.
    qsizetype Longest() const { return m_longest; }

    /// The first byte in [from, end) at which a pattern ends that lies wholly in [begin, end);
    /// end if there is none.
    const char *FindEnd(const char *begin, const char *from, const char *end) const;

    /// Adds the indexes of all patterns that end at the byte, in no particular order.
    void CollectAt(const char *begin, const char *byte, std::vector<int> &indexes) const;

  private:
    /// Stands for the reversed bytes from its parent's end to its own. The children of a node lie
    /// side by side in m_nodes, ordered by first byte.
    struct Node {
        uint32_t label = 0; ///< place of its bytes in m_labels
        uint32_t labelLength = 0;
        uint32_t firstChild = 0;
        uint32_t childCount = 0;
        uint32_t firstEnd = 0; ///< place in m_ends of the patterns that are complete here
        uint32_t endCount = 0;
    };
    struct Reversed {
        QByteArray bytes;
        int index;
    };
    /// A node still to be given its label, ends and children: patterns [first, last), whose
    /// first depth bytes its ancestors stand for.
    struct Pending {
        uint32_t node;
        size_t first, last;
        qsizetype depth;
    };

    void BuildFilter(const std::vector<Pattern> &patterns);
    void BuildTree(const std::vector<Reversed> &sorted);
    void Expand(const std::vector<Reversed> &sorted, const Pending &pending,
                std::vector<Pending> &open);
    const Node *ChildFor(const Node &node, char byte) const;
    bool PassesFilter(const char *byte) const;
    bool EndsAt(const char *begin, const char *byte, std::vector<int> *indexes) const;

    std::vector<Node> m_nodes; ///< the root first
    std::array<uint32_t, 256> m_rootChild{};
    QByteArray m_labels;
    std::vector<int> m_ends;
    std::vector<uint64_t> m_filter;
    uint32_t m_filterMask = 0; ///< over the bytes that the filter looks at
    qsizetype m_filterBytes = 0;
    qsizetype m_longest = 0;
};
