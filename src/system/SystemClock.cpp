// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemClock.h"

#include "CodePage1252.h"

#include <QLocale>

#include <algorithm>

SystemClock::SystemClock()
    : m_dateSeparator(SeparatorOf(QLocale::system().dateFormat(QLocale::ShortFormat)))
{
}

QString SystemClock::ShortDate(QDate date) const
{
    return QLocale::system().toString(date, QLocale::ShortFormat);
}

QString SystemClock::SeparatorOf(const QString &dateFormat)
{
    const auto isField = [](QChar c) { return c == u'd' || c == u'M' || c == u'y'; };
    const auto field = std::find_if(dateFormat.begin(), dateFormat.end(), isField);
    const auto start = std::find_if_not(field, dateFormat.end(), isField);
    const auto end = std::find_if(start, dateFormat.end(), isField);
    const QString separator = QString(start, end - start).remove(u'\'').trimmed();
    const bool showable = CodePage1252::FromUnicode(separator).firstForeign < 0;
    return separator.isEmpty() || !showable ? QStringLiteral("/") : separator;
}
