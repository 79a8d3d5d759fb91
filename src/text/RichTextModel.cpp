// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextModel.h"

#include "CodePage1252.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace
{

QByteArray LowerCase(QByteArrayView text)
{
    QByteArray lower(text.size(), Qt::Uninitialized);
    std::transform(text.begin(), text.end(), lower.begin(),
                   [](char byte) { return char(CodePage1252::ToLower(uchar(byte))); });
    return lower;
}

/// For each prefix of the pattern the length of its longest proper border: where a search goes on
/// after a mismatch, so that no character of the text is looked at from the start again.
std::vector<qsizetype> BorderLengths(QByteArrayView pattern)
{
    std::vector<qsizetype> borders(size_t(pattern.size()), 0);
    qsizetype border = 0;
    for (qsizetype i = 1; i < pattern.size(); ++i) {
        while (border > 0 && pattern[i] != pattern[border])
            border = borders[size_t(border - 1)];
        if (pattern[i] == pattern[border])
            ++border;
        borders[size_t(i)] = border;
    }
    return borders;
}

} // namespace

uchar RichTextModel::ByteAt(qint64 position) const
{
    return uchar(m_text[position - m_begin]);
}

const RichTextModel::StyleRun &RichTextModel::RunAt(qint64 position) const
{
    Q_ASSERT(position >= Begin() && position < End());
    return *std::upper_bound(m_runs.begin(), m_runs.end(), position,
                             [](qint64 wanted, const StyleRun &run) { return wanted < run.end; });
}

void RichTextModel::NoteZeros(QByteArrayView bytes)
{
    const qint64 from = End() - bytes.size();
    for (qsizetype at = bytes.indexOf('\0'); at >= 0; at = bytes.indexOf('\0', at + 1))
        m_zeros.push_back(from + at);
}

bool RichTextModel::StandsForZero(qint64 position) const
{
    return std::binary_search(m_zeros.begin(), m_zeros.end(), position);
}

void RichTextModel::AppendStyled(QByteArrayView text, const TextStyle &style)
{
    if (!text.isEmpty()) {
        m_text.append(text);
        AppendRun(End(), style);
    }
    Trim();
    Q_EMIT Changed();
}

void RichTextModel::Extend(QByteArrayView text, const TextStyle &style)
{
    if (text.isEmpty())
        return;
    m_text.append(text);
    AppendRun(End(), style);
}

void RichTextModel::KeepLast(qint64 count)
{
    if (Length() > count)
        CutFront(Length() - count);
    Q_EMIT Changed();
}

void RichTextModel::TrimView()
{
    const qint64 before = m_begin;
    Trim();
    if (m_begin != before)
        Q_EMIT Changed();
}

void RichTextModel::MoveViewContent(RichTextModel &source)
{
    if (source.m_text.isEmpty() || &source == this)
        return;
    const qint64 shift = End() - source.m_begin;
    const qint64 left = LengthAfterAppend(Length(), source.Length());
    const qint64 unseen = source.Length() - left; // of the source; a burst need not be copied
    if (unseen > 0) {
        CutFront(Length());
        m_begin += unseen;
    }
    m_text.append(QByteArrayView(source.m_text).sliced(std::max<qint64>(0, unseen)));
    for (const StyleRun &run : source.m_runs) {
        if (run.end + shift > m_begin)
            AppendRun(run.end + shift, run.style);
    }
    std::transform(source.m_zeros.begin(), source.m_zeros.end(), std::back_inserter(m_zeros),
                   [shift](qint64 zero) { return zero + shift; });
    CutFront(Length() - left);
    source.CutFront(source.Length());
    Q_EMIT source.Changed();
    Q_EMIT Changed();
}

void RichTextModel::SetText(QByteArrayView text, const TextStyle &style)
{
    const QByteArray content = text.toByteArray();
    CutFront(Length());
    m_text = content;
    if (!content.isEmpty())
        AppendRun(End(), style);
    m_caret = m_anchor = m_begin;
    ++m_editRevision;
    Q_EMIT Changed();
}

void RichTextModel::Replace(qint64 from, qint64 to, QByteArrayView text, const TextStyle &style)
{
    from = qBound(Begin(), from, End());
    to = qBound(from, to, End());
    if (from == to && text.isEmpty())
        return;

    const std::deque<StyleRun> old = std::exchange(m_runs, {});
    for (const StyleRun &run : old) {
        if (from > Begin())
            AppendRun(qMin(run.end, from), run.style);
        if (run.end >= from)
            break;
    }
    const qint64 behind = from + text.size();
    if (behind > from)
        AppendRun(behind, style);
    for (const StyleRun &run : old) {
        if (run.end > to)
            AppendRun(run.end - to + behind, run.style);
    }

    m_text.replace(from - m_begin, to - from, text);
    MoveZeros(from, to, behind);
    m_caret = m_anchor = behind;
    ++m_editRevision;
    if (behind > from)
        Trim();
    Q_EMIT Changed();
}

QByteArrayView RichTextModel::SelectedText() const
{
    return Bytes().sliced(SelectionStart() - m_begin, SelectionEnd() - SelectionStart());
}

void RichTextModel::Select(qint64 anchor, qint64 caret)
{
    anchor = qBound(Begin(), anchor, End());
    caret = qBound(Begin(), caret, End());
    if (anchor == m_anchor && caret == m_caret)
        return;
    m_anchor = anchor;
    m_caret = caret;
    Q_EMIT Changed();
}

void RichTextModel::SetReadOnly(bool readOnly)
{
    if (readOnly == m_readOnly)
        return;
    m_readOnly = readOnly;
    Q_EMIT Changed();
}

qint64 RichTextModel::Find(QByteArrayView pattern, qint64 from) const
{
    const qsizetype first = qBound(Begin(), from, End()) - m_begin;
    if (pattern.isEmpty() || pattern.size() > Length() - first)
        return -1;

    const QByteArray wanted = LowerCase(pattern);
    const std::vector<qsizetype> borders = BorderLengths(wanted);
    const char *const bytes = m_text.constData();
    const char *const pivot = wanted.constData();
    qsizetype matched = 0;
    for (qsizetype i = first; i < m_text.size(); ++i) {
        const char byte = char(CodePage1252::ToLower(uchar(bytes[i])));
        while (matched > 0 && pivot[matched] != byte)
            matched = borders[size_t(matched - 1)];
        if (pivot[matched] == byte)
            ++matched;
        if (matched == wanted.size())
            return m_begin + i + 1 - matched;
    }
    return -1;
}

/// Extends the last run to the end given, or begins a new one there.
void RichTextModel::AppendRun(qint64 end, const TextStyle &style)
{
    if (!m_runs.empty() && m_runs.back().style == style)
        m_runs.back().end = end;
    else
        m_runs.push_back({end, style});
}

/// What stood in [from, to) has gone, what stood at to stands behind now.
void RichTextModel::MoveZeros(qint64 from, qint64 to, qint64 behind)
{
    const auto first = std::lower_bound(m_zeros.begin(), m_zeros.end(), from);
    const auto kept = m_zeros.erase(first, std::lower_bound(first, m_zeros.end(), to));
    std::for_each(kept, m_zeros.end(), [&](qint64 &zero) { zero += behind - to; });
}

void RichTextModel::CutFront(qsizetype count)
{
    m_begin += count;
    m_text.remove(0, count);
    while (!m_runs.empty() && m_runs.front().end <= m_begin)
        m_runs.pop_front();
    m_zeros.erase(m_zeros.begin(), std::lower_bound(m_zeros.begin(), m_zeros.end(), m_begin));
    m_caret = qMax(m_caret, m_begin);
    m_anchor = qMax(m_anchor, m_begin);
}

void RichTextModel::Trim()
{
    if (Length() > HardLimit)
        CutFront(Length() - MaxViewLength);
    else if (Length() > MaxViewLength)
        CutFront(TrimLength);
}
