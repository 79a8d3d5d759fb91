// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DeletionEffects.h"

#include "MdSequenceEdition.h"
#include "NamedSequences.h"

namespace
{

/// What a receive sequence is answered with; nothing without a name, as nothing is sent then.
SendSequence AnswerOf(const MdSequenceEdition &sequences, const ReceiveSequence &record)
{
    const SendSequence *answer = sequences.AnswerOf(record);
    return answer && !answer->Name.isEmpty() ? *answer : SendSequence();
}

QString Shown(const SendSequence &answer)
{
    return answer.Name.isEmpty() ? QStringLiteral("no answer")
                                 : NamedSequences::Quoted(answer.Name);
}

QString ActiveText(const ReceiveSequence &record)
{
    return record.Active == 1 ? QStringLiteral("active") : QStringLiteral("inactive");
}

QString Message(const QString &what, const QStringList &lines)
{
    return lines.isEmpty() ? QString() : what + u'\n' + NamedSequences::Listed(lines);
}

} // namespace

namespace DeletionEffects
{

QString OnAnswers(const MdSequenceEdition &before, const MdSequenceEdition &now)
{
    QStringList lines;
    for (int i = 0; i < now.ReceiveCount(); ++i) {
        const ReceiveSequence &record = now.ReceiveAt(i);
        const SendSequence was = AnswerOf(before, record);
        const SendSequence is = AnswerOf(now, record);
        if (was.Name == is.Name && was.Sequence == is.Sequence)
            continue;
        const QString shown =
            was.Name == is.Name ? QStringLiteral("another ") + Shown(is) : Shown(is);
        lines << QStringLiteral("%1: %2 before, %3 now")
                     .arg(NamedSequences::Title(i, record.Name), Shown(was), shown);
    }
    return Message(QStringLiteral("Answers go by the place of the send sequence. These receive "
                                  "sequences have another answer now:"),
                   lines);
}

QString OnActive(const MdSequenceEdition &before, const MdSequenceEdition &now)
{
    QStringList lines;
    for (int i = before.CurrentReceiveIndex; i < now.ReceiveCount(); ++i) {
        const ReceiveSequence &was = before.ReceiveAt(i + 1);
        const ReceiveSequence &is = now.ReceiveAt(i);
        if ((was.Active == 1) != (is.Active == 1))
            lines << QStringLiteral("%1: %2 before, %3 now")
                         .arg(NamedSequences::Title(i, is.Name), ActiveText(was), ActiveText(is));
    }
    return Message(QStringLiteral("\"Active\" goes by the place in the list. It is another one now "
                                  "for these receive sequences:"),
                   lines);
}

} // namespace DeletionEffects
