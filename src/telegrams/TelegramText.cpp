// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramText.h"

#include "ByteLook.h"
#include "CodePage1252.h"
#include "CsvCell.h"
#include "PlainText.h"

#include <QDateTime>
#include <QStringList>

#include <algorithm>
#include <array>
#include <utility>

namespace
{

using Kind = TrafficEvent::Kind;

constexpr qint64 Second = 1'000'000'000;
constexpr qint64 Microsecond = 1'000;

constexpr std::array KindTexts = {
    "received",    "sent",   "not sent", "damaged byte", "break",   "bytes lost by the system",
    "modem lines", "opened", "closed",   "went away",    "is back", "not recorded",
    "clock set"};
static_assert(KindTexts.size() == size_t(Kind::ClockSet) + 1);

constexpr std::array MarkTexts = {std::pair{Telegram::Gap, "gap"},
                                  std::pair{Telegram::Damaged, "damaged"},
                                  std::pair{Telegram::Overrun, "lost by the system"},
                                  std::pair{Telegram::OrderUncertain, "order uncertain"},
                                  std::pair{Telegram::Continued, "continued"},
                                  std::pair{Telegram::LinesChanged, "modem lines"},
                                  std::pair{Telegram::Unreadable, "cannot be read"}};

/// A cell of a spreadsheet holds 32,767 characters; more bytes come in several rows.
constexpr qsizetype MostBytesOfACsvRow = 8192;

constexpr qsizetype BytesOfAnArrayLine = 12;

/// What a C compiler would take for the end of a comment.
QByteArray InComment(QString text)
{
    return text.replace(QStringLiteral("*/"), QStringLiteral("* /")).toUtf8();
}

QStringList Words(const Telegram &telegram)
{
    QStringList words = {TelegramText::Time(telegram.wall), TelegramText::Port(telegram),
                         TelegramText::Kind(telegram)};
    if (telegram.HasBytes())
        words << QStringLiteral("%1 bytes").arg(telegram.bytes.size());
    for (const QString &text : {TelegramText::Names(telegram), TelegramText::Details(telegram)}) {
        if (!text.isEmpty())
            words << text;
    }
    if (telegram.response >= 0)
        words << QStringLiteral("after ") + TelegramText::Duration(telegram.response) +
                     QStringLiteral(" s");
    return words;
}

QByteArray ArrayOf(const Telegram &telegram)
{
    const QByteArray number = QByteArray::number(telegram.number);
    QByteArray text =
        "/* " + number + ": " + InComment(Words(telegram).join(QStringLiteral(", "))) + " */\n";
    if (!telegram.HasBytes())
        return text;
    text += "static const unsigned char telegram_" + number + '[' +
            QByteArray::number(telegram.bytes.size()) + "] = {";
    for (qsizetype i = 0; i < telegram.bytes.size(); ++i) {
        text += i % BytesOfAnArrayLine == 0 ? "\n    0x" : " 0x";
        text += telegram.bytes.sliced(i, 1).toHex().toUpper() + ',';
    }
    text.chop(1);
    return text + "\n};\n";
}

QByteArray TextRow(const Telegram &telegram, const QString &apart)
{
    const QString between = QStringLiteral("  ");
    QStringList cells = {QString::number(telegram.number), TelegramText::Time(telegram.wall), apart,
                         TelegramText::Port(telegram), TelegramText::Kind(telegram)};
    if (telegram.HasBytes())
        cells << QString::number(telegram.bytes.size()) << TelegramText::Hex(telegram.bytes)
              << TelegramText::Characters(telegram.bytes);
    const QStringList words = Words(telegram).sliced(telegram.HasBytes() ? 4 : 3);
    if (!words.isEmpty())
        cells << words.join(QStringLiteral(", "));
    return cells.join(between).toUtf8() + '\n';
}

} // namespace

namespace TelegramText
{

QString Time(qint64 wall)
{
    const qint64 second = wall / Second - (wall % Second < 0 ? 1 : 0);
    return QDateTime::fromSecsSinceEpoch(second).toString(u"yyyy-MM-dd HH:mm:ss.") +
           QString::number((wall - second * Second) / Microsecond).rightJustified(6, u'0');
}

QString Duration(qint64 time)
{
    const qint64 microseconds = std::abs(time) / Microsecond;
    constexpr qint64 Million = 1'000'000;
    return (time < 0 ? QStringLiteral("-") : QString()) + QString::number(microseconds / Million) +
           u'.' + QString::number(microseconds % Million).rightJustified(6, u'0');
}

QString Port(const Telegram &telegram)
{
    return telegram.port.isEmpty() ? QString::number(telegram.channel + 1)
                                   : PlainText(telegram.port);
}

QString Kind(const Telegram &telegram)
{
    return QString::fromLatin1(KindTexts[size_t(telegram.kind)]);
}

QString Names(const Telegram &telegram)
{
    QStringList names;
    for (const QByteArray &name : telegram.names)
        names << CodePage1252::ToUnicode(name);
    const QString text = PlainText(names.join(QStringLiteral("; ")));
    return telegram.answer ? QStringLiteral("answer to ") + text : text;
}

QString Details(const Telegram &telegram)
{
    QStringList details;
    for (const auto &[mark, text] : MarkTexts) {
        const bool isSaid = !telegram.HasBytes() && mark != Telegram::Unreadable &&
                            mark != Telegram::OrderUncertain;
        if (telegram.marks & mark && !isSaid)
            details << QString::fromLatin1(text);
    }
    for (const QString &text : {telegram.checksum, telegram.remark}) {
        if (!text.isEmpty())
            details << text;
    }
    return PlainText(details.join(QStringLiteral("; ")));
}

QString Hex(QByteArrayView bytes)
{
    return QString::fromLatin1(bytes.toByteArray().toHex(' ').toUpper());
}

QString Characters(QByteArrayView bytes)
{
    return ByteLook::ToPictures(bytes);
}

} // namespace TelegramText

QByteArray TelegramWriter::Head() const
{
    return m_form == Form::Csv ? "number,time,difference,port,event,length,hex,text,names,"
                                 "response,details\n"
                               : QByteArray();
}

QByteArray TelegramWriter::Row(const Telegram &telegram)
{
    const QString apart =
        m_isFirst ? QStringLiteral("0.000000") : TelegramText::Duration(telegram.time - m_last);
    m_last = telegram.time;
    m_isFirst = false;
    if (m_form == Form::CArray)
        return ArrayOf(telegram);
    return m_form == Form::Csv ? CsvRow(telegram, apart) : TextRow(telegram, apart);
}

/// The names belong to the last byte, and so to the last row.
QByteArray TelegramWriter::CsvRow(const Telegram &telegram, const QString &apart) const
{
    const QByteArray head = QByteArray::number(telegram.number) + ',' +
                            TelegramText::Time(telegram.wall).toLatin1() + ',' + apart.toLatin1() +
                            ',' + CsvCell(TelegramText::Port(telegram)) + ',' +
                            TelegramText::Kind(telegram).toLatin1() + ',' +
                            QByteArray::number(telegram.bytes.size()) + ',';
    const QByteArray end =
        CsvCell(TelegramText::Names(telegram)) + ',' +
        (telegram.response < 0 ? QByteArray()
                               : TelegramText::Duration(telegram.response).toLatin1()) +
        ',' + CsvCell(TelegramText::Details(telegram)) + '\n';
    QByteArray rows;
    QByteArrayView rest = telegram.bytes;
    for (bool isLast = false; !isLast;) {
        isLast = rest.size() <= MostBytesOfACsvRow;
        const QByteArrayView bytes = rest.first(std::min(rest.size(), MostBytesOfACsvRow));
        rest = rest.sliced(bytes.size());
        rows += head + bytes.toByteArray().toHex(' ').toUpper() + ',' +
                CsvCell(TelegramText::Characters(bytes)) + ',' + (isLast ? end : ",,\n");
    }
    return rows;
}
