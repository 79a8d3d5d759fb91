// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TrafficEvent.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// What happened as rows of comma-separated values, in UTF-8. The man page of serimonde-cli
/// describes the columns.
class CsvLines final
{
  public:
    /// More bytes come in several rows: a cell of a spreadsheet holds 32,767 characters.
    static constexpr qsizetype MostBytesOfARow = 8192;

    /// The row of the columns' names.
    static QByteArray Head();
    /// The rows of an event, with a name of its port, a stranger's text.
    void Append(QByteArray &rows, const TrafficEvent &event, const QString &port);

  private:
    QByteArray TimeOf(qint64 wall);

    // The last second that was written, most often that of the next event.
    qint64 m_second = -1;
    QByteArray m_before; ///< up to the point
    QByteArray m_behind; ///< the offset to UTC
};
