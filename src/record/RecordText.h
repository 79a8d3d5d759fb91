// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QLocale>
#include <QString>

/// How the user is told of a record.
namespace RecordText
{

/// Such as "12.3 MiB".
inline QString Size(qint64 bytes)
{
    return QLocale::system().formattedDataSize(bytes, 1);
}

/// Of nanoseconds since 1970.
inline QString Time(qint64 time)
{
    return QLocale::system().toString(QDateTime::fromMSecsSinceEpoch(time / 1'000'000),
                                      QLocale::ShortFormat);
}

} // namespace RecordText
