// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "FieldReader.h"

#include <algorithm>
#include <string_view>

QByteArray FieldReader::ReadInfo()
{
    while (!EndOfFile() && m_bytes[m_place] == ' ')
        ++m_place;
    const bool quoted = !EndOfFile() && m_bytes[m_place] == '"';
    QByteArray field;
    if (quoted) {
        ++m_place;
        field = TakeUntil("\"");
    }
    const QByteArray unquoted = TakeUntil(",\r\n");
    PassSeparator();
    return quoted ? field : unquoted;
}

QByteArray FieldReader::TakeUntil(const char *ends)
{
    const auto begin = m_bytes.cbegin() + m_place;
    const std::string_view endCharacters(ends);
    const auto end = std::find_if(begin, m_bytes.cend(), [endCharacters](char character) {
        return endCharacters.find(character) != std::string_view::npos;
    });
    m_place = end - m_bytes.cbegin();
    return {begin, end - begin};
}

void FieldReader::PassSeparator()
{
    if (EndOfFile())
        return;
    const bool carriageReturn = m_bytes[m_place++] == '\r';
    if (carriageReturn && !EndOfFile() && m_bytes[m_place] == '\n')
        ++m_place;
}
