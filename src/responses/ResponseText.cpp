// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ResponseText.h"

#include "CodePage1252.h"
#include "CsvCell.h"
#include "PlainText.h"
#include "TelegramText.h"

namespace
{

QByteArray Seconds(qint64 time)
{
    return time < 0 ? QByteArray() : TelegramText::Duration(time).toLatin1();
}

} // namespace

namespace ResponseText
{

QString Name(const ResponseKey &key)
{
    QString name = PlainText(CodePage1252::ToUnicode(key.name));
    switch (key.kind) {
    case ResponseKey::Kind::Speech:
        return QStringLiteral("channel %1 speaks, channel %2 answers")
            .arg(key.channel + 1)
            .arg(2 - key.channel);
    case ResponseKey::Kind::Answer:
        return QStringLiteral("answer to ") + name;
    case ResponseKey::Kind::ByHand:
        return name.isEmpty() ? QStringLiteral("no sequence") : name;
    case ResponseKey::Kind::Detection:
        break;
    }
    return name;
}

QString Event(ResponseKey::Kind kind)
{
    switch (kind) {
    case ResponseKey::Kind::Speech:
        return QStringLiteral("said");
    case ResponseKey::Kind::ByHand:
        return QStringLiteral("sent by hand");
    case ResponseKey::Kind::Answer:
        return QStringLiteral("sent as answer");
    case ResponseKey::Kind::Detection:
        break;
    }
    return QStringLiteral("received");
}

QByteArray Csv(const QList<ResponseRow> &rows)
{
    QByteArray text = "sequence,event,channel,count,answered,unanswered,last,least,median,"
                      "95 percent,greatest\n";
    for (const ResponseRow &row : rows) {
        const bool isQuestion = row.key.kind != ResponseKey::Kind::Detection;
        text += CsvCell(Name(row.key)) + ',' + Event(row.key.kind).toLatin1() + ',' +
                QByteArray::number(row.key.channel + 1) + ',' + QByteArray::number(row.count) +
                ',' + (isQuestion ? QByteArray::number(row.answered) : QByteArray()) + ',' +
                (isQuestion ? QByteArray::number(row.unanswered) : QByteArray());
        for (const qint64 time : {row.last, row.least, row.median, row.percentile95, row.greatest})
            text += ',' + Seconds(time);
        text += '\n';
    }
    return text;
}

} // namespace ResponseText
