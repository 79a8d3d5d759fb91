// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

#include <utility>

/// Reads bytes field by field, as a reader of comma-separated lists does.
class FieldReader
{
  public:
    explicit FieldReader(QByteArray bytes = {}) : m_bytes(std::move(bytes)) {}

    /// The next field: without leading blanks, up to a comma or a line end (CR LF, LF or CR), which
    /// is passed over. With a double quote in front it is all up to the next quote, line ends
    /// included, or up to the end of the bytes; what stands between that quote and the separator is
    /// dropped. Empty for an empty line and after the end.
    QByteArray ReadInfo();

    /// The line in which the latest field began, from 1.
    qsizetype Line() const;

    /// No byte is left.
    bool EndOfFile() const { return m_place >= m_bytes.size(); }

  private:
    QByteArray TakeUntil(const char *ends);
    void PassSeparator();

    QByteArray m_bytes;
    qsizetype m_place = 0;
    qsizetype m_fieldStart = 0;
};
