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

QString ActiveText(bool active)
{
    return active ? QStringLiteral("active") : QStringLiteral("inactive");
}

QString Message(const QString &what, const QStringList &lines)
{
    return lines.isEmpty() ? QString() : what + u'\n' + NamedSequences::Listed(lines);
}

} // namespace

DeletionEffects::DeletionEffects(const MdSequenceEdition &sequences) : m_sequences(sequences)
{
    for (int i = 0; i < sequences.ReceiveCount(); ++i) {
        m_answers << AnswerOf(sequences, sequences.ReceiveAt(i));
        m_active << (sequences.ReceiveAt(i).Active == 1);
    }
}

QString DeletionEffects::OnAnswers() const
{
    QStringList lines;
    for (int i = 0; i < m_sequences.ReceiveCount(); ++i) {
        const ReceiveSequence &record = m_sequences.ReceiveAt(i);
        const SendSequence &was = m_answers[i];
        const SendSequence is = AnswerOf(m_sequences, record);
        if (was.Name == is.Name && was.Sequence == is.Sequence)
            continue;
        const QString another = was.Name == is.Name ? QStringLiteral("another ") : QString();
        lines << QStringLiteral("%1: %2 before, %3 now")
                     .arg(NamedSequences::Title(i, record.Name), Shown(was), another + Shown(is));
    }
    return Message(QStringLiteral("Answers go by the place of the send sequence. These receive "
                                  "sequences have another answer now:"),
                   lines);
}

QString DeletionEffects::OnActive() const
{
    QStringList lines;
    for (int i = m_sequences.CurrentReceiveIndex; i < m_sequences.ReceiveCount(); ++i) {
        const ReceiveSequence &record = m_sequences.ReceiveAt(i);
        const bool was = m_active[i + 1];
        const bool is = record.Active == 1;
        if (was != is)
            lines << QStringLiteral("%1: %2 before, %3 now")
                         .arg(NamedSequences::Title(i, record.Name), ActiveText(was),
                              ActiveText(is));
    }
    return Message(QStringLiteral("\"Active\" goes by the place in the list. It is another one now "
                                  "for these receive sequences:"),
                   lines);
}
