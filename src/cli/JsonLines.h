// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "StepRunner.h"
#include "TrafficEvent.h"

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>

/// What a run tells as JSON, an object a line. docs/json-lines.md describes it.
class JsonLines
{
  public:
    /// The moment from which times count, in nanoseconds of LineTime::monotonic.
    void Begin(qint64 monotonic) { m_begin = monotonic; }

    QByteArray Traffic(const TrafficEvent &event) const;
    QByteArray StepDone(const StepOutcome &outcome) const;
    /// To a command.
    QByteArray Answer(const StepOutcome &outcome, const QJsonValue &id) const;
    /// Something forbidden came while no command waited.
    QByteArray Forbidden(const StepOutcome &outcome) const;
    QByteArray Refusal(int line, const QJsonValue &id, const QString &cause) const;

    /// What a run came to.
    struct End {
        int status = 0;
        QString cause; ///< empty if it passed
        int passed = 0;
        int failed = 0;
        int notRun = 0;
        qint64 time = 0; ///< nanoseconds of LineTime::monotonic
    };
    QByteArray Ended(const End &end) const;

    /// What an event is called.
    static QString NameOf(TrafficEvent::Kind kind);
    /// Bytes as hexadecimal digits.
    static QString Hex(const QByteArray &bytes);

  private:
    qint64 Microseconds(qint64 monotonic) const { return (monotonic - m_begin) / 1000; }

    qint64 m_begin = 0;
};
