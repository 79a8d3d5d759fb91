// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "NamedSequences.h"

#include "CodePage1252.h"
#include "MdSequenceEdition.h"

namespace
{

constexpr qsizetype LongestText = 40;
constexpr qsizetype MostLines = 12;

} // namespace

namespace NamedSequences
{

QStringList NamesOf(const MdSequenceEdition &sequences)
{
    QStringList names;
    for (int i = 0; i < sequences.SendCount(); ++i)
        names << CodePage1252::ToUnicode(sequences.SendAt(i).Name);
    for (int i = 0; i < sequences.ReceiveCount(); ++i)
        names << CodePage1252::ToUnicode(sequences.ReceiveAt(i).Name);
    names.removeAll(QString());
    names.removeDuplicates();
    return names;
}

QString Quoted(QByteArrayView text)
{
    QString shown = CodePage1252::ToUnicode(text.first(qMin(text.size(), LongestText)));
    for (QChar &character : shown) {
        if (character == u'\r' || character == u'\n' || character == u'\t')
            character = u' ';
    }
    return u'"' + shown +
           (text.size() > LongestText ? QStringLiteral("\u2026\"") : QStringLiteral("\""));
}

QString Title(int index, QByteArrayView name)
{
    return QString::number(index) + QStringLiteral(", ") + Quoted(name);
}

QString Listed(const QStringList &lines)
{
    const qsizetype shown = lines.size() > MostLines ? MostLines - 1 : lines.size();
    QStringList listed = lines.first(shown);
    if (shown < lines.size())
        listed << QStringLiteral("and %1 more").arg(lines.size() - shown);
    return listed.join(u'\n');
}

} // namespace NamedSequences
