// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MarkedBytes.h"

#include <cstring>
#include <utility>

namespace
{

constexpr char Mark = '\xFF';

} // namespace

MarkedBytes::Read MarkedBytes::Decode(QByteArrayView marked, int newBreaks)
{
    if (m_held.isEmpty() && !std::memchr(marked.data(), Mark, size_t(marked.size())))
        return {marked.toByteArray(), {}, 0};

    const QByteArray all = std::exchange(m_held, {}) + marked.toByteArray();
    Read read;
    read.bytes.reserve(all.size());
    for (qsizetype at = 0; at < all.size(); ++at) {
        if (all[at] != Mark) {
            read.bytes += all[at];
            continue;
        }
        const QByteArrayView mark = QByteArrayView(all).sliced(at);
        const bool doubled = mark.size() > 1 && mark[1] == Mark;
        if (mark.size() < (doubled ? 2 : 3) && (mark.size() < 2 || mark[1] == '\0')) {
            m_held = mark.toByteArray();
            break;
        }
        if (doubled || mark[1] != '\0') { // the system marks nothing else; it would come through
            read.bytes += Mark;
            at += doubled ? 1 : 0;
            continue;
        }
        at += 2;
        if (mark[2] == '\0' && (newBreaks < 0 || read.breaks < newBreaks)) {
            ++read.breaks;
            continue;
        }
        read.damaged.push_back(read.bytes.size());
        read.bytes += mark[2];
    }
    return read;
}
