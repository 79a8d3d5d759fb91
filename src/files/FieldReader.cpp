// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "FieldReader.h"

#include <algorithm>
#include <string_view>

QByteArray FieldReader::ReadInfo()
{
    while (!EndOfFile() && m_bytes[m_place] == ' ')
        ++m_place;
    m_fieldStart = m_place;
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

/// Counted when it is asked for, as only a failure asks.
qsizetype FieldReader::Line() const
{
    const QByteArrayView before = QByteArrayView(m_bytes).first(m_fieldStart);
    qsizetype line = 1;
    for (qsizetype i = 0; i < before.size(); ++i) {
        const bool pair = before[i] == '\r' && i + 1 < before.size() && before[i + 1] == '\n';
        line += (before[i] == '\r' && !pair) || before[i] == '\n' ? 1 : 0;
    }
    return line;
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
