// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextLayout.h"

#include "RichTextModel.h"

#include <algorithm>

namespace
{

/// Whether the byte is no blank and no line break.
bool IsLetter(char byte)
{
    return byte != ' ' && byte != '\t' && byte != '\r' && byte != '\n';
}

} // namespace

void RichTextLayout::Update(int columns)
{
    columns = qMax(columns, 1);
    if (columns != m_columns || m_model.EditRevision() != m_editRevision) {
        m_columns = columns;
        m_editRevision = m_model.EditRevision();
        Restart(m_model.Begin());
    } else {
        DropRows();
    }
    Scan(m_model.End());
}

void RichTextLayout::LayOutPart(qint64 from, qint64 to, int columns)
{
    m_columns = qMax(columns, 1);
    m_editRevision = m_model.EditRevision();
    from = qBound(m_model.Begin(), from, m_model.End());
    Restart(from);
    Scan(qBound(from, to, m_model.End()));
}

qint64 RichTextLayout::RowStart(qsizetype row) const
{
    return qMax(m_starts[size_t(row)], m_model.Begin());
}

qint64 RichTextLayout::RowEnd(qsizetype row) const
{
    return row + 1 < RowCount() ? m_starts[size_t(row + 1)] : m_at;
}

qint64 RichTextLayout::RowTextEnd(qsizetype row) const
{
    const qint64 start = RowStart(row);
    qint64 end = RowEnd(row);
    if (end > start && m_model.ByteAt(end - 1) == '\n')
        --end;
    else if (end > start && m_model.ByteAt(end - 1) == '\r')
        return end - 1;
    else
        return end;
    return end > start && m_model.ByteAt(end - 1) == '\r' ? end - 1 : end;
}

qsizetype RichTextLayout::RowOf(qint64 position) const
{
    const auto next = std::upper_bound(m_starts.begin(), m_starts.end(), position);
    return qMax<qsizetype>(next - m_starts.begin() - 1, 0);
}

int RichTextLayout::ColumnOf(qsizetype row, qint64 position) const
{
    const qint64 end = qMin(position, RowTextEnd(row));
    int column = 0;
    for (qint64 at = RowStart(row); at < end; ++at)
        column = ColumnBehind(m_model.ByteAt(at), column);
    return column;
}

qint64 RichTextLayout::PositionAt(qsizetype row, double column) const
{
    const qint64 end = RowTextEnd(row);
    int left = 0;
    for (qint64 at = RowStart(row); at < end; ++at) {
        const int right = ColumnBehind(m_model.ByteAt(at), left);
        if (column < (left + right) / 2.0)
            return at;
        left = right;
    }
    return end;
}

void RichTextLayout::Restart(qint64 at)
{
    m_starts.clear();
    m_behindCr = false;
    m_at = at;
    StartRow(at);
}

void RichTextLayout::DropRows()
{
    const qint64 begin = m_model.Begin();
    if (begin >= m_starts.back()) {
        Restart(begin);
        return;
    }
    while (m_starts[1] <= begin)
        m_starts.pop_front();
}

void RichTextLayout::Scan(qint64 end)
{
    const char *const bytes = m_model.Bytes().data() - m_model.Begin();
    while (m_at < end) {
        // Most text is letters that fit into their row.
        const qint64 fits = m_at + qMax(m_columns - m_column, 0);
        const char *const next = std::find_if_not(bytes + m_at, bytes + qMin(fits, end), IsLetter);
        if (const qint64 letters = next - (bytes + m_at); letters > 0) {
            m_column += int(letters);
            m_at += letters;
            m_behindCr = false;
        }
        if (m_at < end)
            Take(*next);
    }
}

void RichTextLayout::Take(char byte)
{
    const bool completesCrLf = m_behindCr && byte == '\n';
    m_behindCr = byte == '\r';
    if (completesCrLf) {
        m_starts.back() = m_wrapAt = m_at + 1;
    } else if (byte == '\r' || byte == '\n') {
        StartRow(m_at + 1);
    } else if (byte == ' ' || byte == '\t') {
        m_column = ColumnBehind(uchar(byte), m_column);
        m_wrapAt = m_at + 1;
    } else {
        if (m_column >= m_columns)
            StartRow(m_wrapAt > m_starts.back() ? m_wrapAt : m_at);
        ++m_column;
    }
    ++m_at;
}

/// Begins a row at or before the place of the scan; what lies between holds no blank.
void RichTextLayout::StartRow(qint64 at)
{
    m_starts.push_back(at);
    m_wrapAt = at;
    m_column = int(qMax<qint64>(m_at - at, 0));
}
