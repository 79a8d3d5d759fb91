// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstdint>
#include <vector>

/// Finds which of many byte sequences end at a place of a text. Inside: the last bytes, as many as
/// the shortest sequence has and four at most, go through a bit filter and then lead to a radix
/// tree of what is in front of them, which is walked backward. So the cost of a byte hardly depends
/// on the number of sequences.
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
    /// Stands for the bytes from its parent's end backward to its own. The children of a node lie
    /// side by side in m_nodes, ordered by the byte that they are looked up by.
    struct Node {
        uint32_t label = 0; ///< place of its bytes in m_labels, in the order of the text
        uint32_t labelLength = 0;
        uint32_t firstChild = 0;
        uint16_t childCount = 0; ///< 256 at most
        char lookedUpBy = 0;     ///< the byte in front of its parent's; the last of its label
        uint32_t firstEnd = 0;   ///< place in m_ends of the patterns that are complete here
        uint32_t endCount = 0;
    };
    /// Sequences with the same last bytes: where the tree of them begins.
    struct Tail {
        uint32_t bytes = 0;
        uint32_t node = 0; ///< none for an empty place
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

    void BuildTree(const std::vector<Reversed> &sorted);
    void Expand(const std::vector<Reversed> &sorted, const Pending &pending,
                std::vector<Pending> &open);
    void PutTail(uint32_t bytes, uint32_t node);
    uint32_t FirstNode(uint32_t tail) const;
    const Node *ChildFor(const Node &node, char byte) const;
    bool PassesFilter(uint32_t tail) const;
    bool EndsAt(const char *begin, const char *byte, std::vector<int> *indexes) const;

    std::vector<Node> m_nodes; ///< the first one is nobody's
    std::vector<Tail> m_tails; ///< places by hash; one that is taken sends on to the next
    int m_tailShift = 31;      ///< makes a place of a hash
    QByteArray m_labels;
    std::vector<int> m_ends;
    std::vector<uint64_t> m_filter;
    uint32_t m_tailMask = 0; ///< over the bytes of a tail
    qsizetype m_tailBytes = 0;
    qsizetype m_longest = 0;
};
