// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "JudgementText.h"

#include "PlaceRows.h"
#include "PlainText.h"

#include <algorithm>

namespace
{

/// Rows of texts, each column as wide as its widest text; the last one is not filled up.
class Columns
{
  public:
    void Add(const QStringList &row)
    {
        m_rows << row;
        m_widths.resize(std::max(m_widths.size(), row.size()));
        for (qsizetype i = 0; i + 1 < row.size(); ++i)
            m_widths[i] = std::max(m_widths[i], row[i].size());
    }

    QString Text() const
    {
        QString text;
        for (const QStringList &row : m_rows) {
            QString line;
            for (qsizetype i = 0; i < row.size(); ++i)
                line += row[i].leftJustified(m_widths[i]) + QStringLiteral("  ");
            while (line.endsWith(u' '))
                line.chop(1);
            text += line + u'\n';
        }
        return text;
    }

  private:
    QList<QStringList> m_rows;
    QList<qsizetype> m_widths;
};

QString SequencesText(const Judgement &judgement)
{
    Columns columns;
    columns.Add({QStringLiteral("Receive sequence"), QStringLiteral("Fired"),
                 QStringLiteral("Near misses"), QStringLiteral("Would answer")});
    for (const JudgedSequence &sequence : judgement.sequences) {
        columns.Add({PlaceRows::NameText(sequence.name), PlaceRows::FiredText(sequence),
                     QString::number(sequence.nearMisses), PlaceRows::AnswerText(sequence)});
    }
    return columns.Text();
}

/// What was expected and found stands behind the rest, where its length moves nothing.
QString PlacesText(const Judgement &judgement)
{
    Columns columns;
    columns.Add({QStringLiteral("Time"), QStringLiteral("Packet"), QStringLiteral("At byte"),
                 QStringLiteral("Channel"), QStringLiteral("Receive sequence"),
                 QStringLiteral("What")});
    for (const JudgedPlace &place : judgement.places) {
        const JudgedSpot &spot = place.Spot();
        QString what = PlaceRows::WhatText(place);
        if (place.kind != JudgedPlace::Kind::Fired) {
            what += QStringLiteral("; expected ") + PlaceRows::ExpectedText(judgement, place) +
                    QStringLiteral("; found ") + PlaceRows::FoundText(judgement, place);
        }
        columns.Add({PlaceRows::TimeText(spot.time), QString::number(spot.packet),
                     QString::number(spot.place), PlaceRows::ChannelText(judgement, place.channel),
                     PlaceRows::NameText(judgement.sequences[size_t(place.sequence)].name), what});
    }
    return columns.Text();
}

} // namespace

namespace JudgementText
{

QStringList Summary(const Judgement &judgement)
{
    const auto sum = [&judgement](qint64 JudgedSequence::*count) {
        qint64 all = 0;
        for (const JudgedSequence &sequence : judgement.sequences)
            all += sequence.*count;
        return all;
    };
    const auto never = std::count_if(judgement.sequences.begin(), judgement.sequences.end(),
                                     [](const JudgedSequence &s) { return s.NeverFired(); });
    QStringList lines;
    lines << QStringLiteral("%1 packets with %2 bytes received")
                 .arg(judgement.packets)
                 .arg(judgement.receivedBytes);
    if (judgement.packets > 0) {
        lines.last() +=
            QStringLiteral(", from %1 to %2")
                .arg(PlaceRows::TimeText(judgement.begin), PlaceRows::TimeText(judgement.end));
    }
    lines << QStringLiteral("Fired: %1; near misses: %2; sequences that never fired: %3; would "
                            "have been answered: %4 times, with %5 bytes")
                 .arg(sum(&JudgedSequence::fired))
                 .arg(sum(&JudgedSequence::nearMisses))
                 .arg(never)
                 .arg(judgement.answers)
                 .arg(judgement.answerBytes);
    if (!judgement.damage.isEmpty())
        lines << PlainText(judgement.damage);
    if (!judgement.complete)
        lines << QStringLiteral("Judging was cancelled; what follows is not judged");
    if (const QString limit = PlaceRows::LimitText(judgement); !limit.isEmpty())
        lines << limit;
    return lines;
}

QString Of(const Judgement &judgement, const Subjects &subjects)
{
    const QString project =
        subjects.project.isEmpty() ? QStringLiteral("(without a name)") : subjects.project;
    QString text = QStringLiteral("Capture: ") + PlainText(subjects.capture) + u'\n' +
                   QStringLiteral("Project: ") + PlainText(project) + u'\n';
    text += Summary(judgement).join(u'\n') + QStringLiteral("\n\n") + SequencesText(judgement);
    if (!judgement.places.empty())
        text += u'\n' + PlacesText(judgement);
    return text;
}

} // namespace JudgementText
