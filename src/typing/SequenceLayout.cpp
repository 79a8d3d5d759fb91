// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceLayout.h"

#include "ByteLook.h"
#include "SequenceText.h"

#include <algorithm>
#include <cmath>

namespace
{

qsizetype FittingItems(Representation form, int columns)
{
    const int fitting = (columns + 1) / SequenceText::ItemPitch(form);
    return fitting >= 4 ? fitting / 4 * 4 : qMax(fitting, 1);
}

} // namespace

SequenceLayout::SequenceLayout(Representation form, int columns, const QByteArray &bytes)
    : m_form(form), m_bytes(bytes)
{
    if (form == Representation::Ascii) {
        LayOutAscii(columns);
        return;
    }
    const qsizetype fitting = FittingItems(form, columns);
    for (qsizetype at = fitting; at <= bytes.size(); at += fitting)
        m_starts.push_back(at);
}

void SequenceLayout::LayOutAscii(int columns)
{
    int column = 0;
    for (qsizetype at = 0; at <= m_bytes.size(); ++at) {
        const int width = WidthOf(at);
        if (column > 0 && column + width > columns) {
            m_starts.push_back(at);
            column = 0;
        }
        column += width;
    }
}

qsizetype SequenceLayout::RowOf(qsizetype byte) const
{
    return std::upper_bound(m_starts.begin(), m_starts.end(), byte) - m_starts.begin() - 1;
}

qsizetype SequenceLayout::RowEnd(qsizetype row) const
{
    return row + 1 < RowCount() ? RowStart(row + 1) : m_bytes.size();
}

int SequenceLayout::WidthOf(qsizetype byte) const
{
    if (m_form != Representation::Ascii)
        return SequenceText::ItemWidth(m_form);
    if (byte >= m_bytes.size())
        return 1;
    return int(qMax<qsizetype>(ByteLook::NameOf(uchar(m_bytes[byte])).size(), 1));
}

int SequenceLayout::PitchOf(qsizetype byte) const
{
    return WidthOf(byte) + (m_form == Representation::Ascii ? 0 : 1);
}

int SequenceLayout::ColumnOf(SequencePlace place) const
{
    int column = place.digit;
    for (qsizetype at = RowStart(RowOf(place.byte)); at < place.byte; ++at)
        column += PitchOf(at);
    return column;
}

int SequenceLayout::RowEndColumn(qsizetype row) const
{
    const qsizetype end = RowEnd(row);
    return end > RowStart(row) ? ColumnOf({end - 1, 0}) + WidthOf(end - 1) : 0;
}

SequencePlace SequenceLayout::PlaceAt(qsizetype row, double column) const
{
    const qsizetype byte = ByteUnder(row, column);
    if (m_form == Representation::Ascii)
        return {BorderAt(row, column), 0};
    const double inside = qMax(column, 0.0) - ColumnOf({byte, 0});
    const int digit = int(std::lround(qMin(inside, double(WidthOf(byte)))));
    const bool behind = digit >= WidthOf(byte);
    return behind ? SequencePlace{byte + 1, 0} : SequencePlace{byte, digit};
}

qsizetype SequenceLayout::ByteUnder(qsizetype row, double column) const
{
    qsizetype at = RowStart(row);
    int right = PitchOf(at);
    while (column >= right && at + 1 < RowEnd(row)) {
        ++at;
        right += PitchOf(at);
    }
    return at;
}

qsizetype SequenceLayout::BorderAt(qsizetype row, double column) const
{
    const qsizetype byte = ByteUnder(row, column);
    const double inside = column - ColumnOf({byte, 0});
    return inside > WidthOf(byte) / 2.0 ? qMin(byte + 1, m_bytes.size()) : byte;
}
