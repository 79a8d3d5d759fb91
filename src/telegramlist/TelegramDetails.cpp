// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramDetails.h"

#include "TelegramCells.h"
#include "TelegramDump.h"
#include "TelegramText.h"

#include <QLabel>
#include <QVBoxLayout>

namespace
{

QString Summary(const Telegram &telegram, const QString &note)
{
    const QString dot = QStringLiteral(" \u00B7 ");
    QStringList parts = {QStringLiteral("No. %1").arg(telegram.number),
                         TelegramCells::TimeText(telegram.wall, true)};
    if (telegram.HasBytes()) {
        const bool sent = telegram.kind == TrafficEvent::Kind::Sent;
        parts += (sent ? QStringLiteral("sent ") : QStringLiteral("received ")) +
                 TelegramCells::PortText(telegram);
        parts += telegram.bytes.size() == 1 ? QStringLiteral("1 byte")
                                            : QStringLiteral("%1 bytes").arg(telegram.bytes.size());
        if (telegram.end > telegram.time)
            parts += QStringLiteral("read within %1")
                         .arg(TelegramCells::SpanText(telegram.end - telegram.time));
        parts += TelegramText::Names(telegram);
        if (telegram.response >= 0)
            parts +=
                QStringLiteral("answered after %1").arg(TelegramCells::SpanText(telegram.response));
    } else {
        parts += TelegramCells::EventText(telegram);
    }
    parts << TelegramCells::MarksText(telegram, true) << note;
    parts.removeAll(QString());
    return parts.join(dot);
}

} // namespace

TelegramDetails::TelegramDetails(QWidget *parent)
    : QWidget(parent), lblTelegram(new QLabel), m_dump(new TelegramDump)
{
    lblTelegram->setObjectName(QStringLiteral("lblTelegram"));
    lblTelegram->setTextFormat(Qt::PlainText);
    lblTelegram->setWordWrap(true);
    lblTelegram->setMargin(3);
    lblTelegram->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_dump->setObjectName(QStringLiteral("lstBytes"));
    m_dump->setAccessibleName(QStringLiteral("Bytes of the Telegram"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(lblTelegram);
    column->addWidget(m_dump, 1);
    setFocusProxy(m_dump);
    Clear();
}

void TelegramDetails::Clear()
{
    lblTelegram->setText(QStringLiteral("Choose a telegram to see all of it here."));
    m_dump->Show({});
    m_dump->setAccessibleDescription(lblTelegram->text());
}

void TelegramDetails::Show(const Telegram &telegram, const QString &note)
{
    lblTelegram->setText(Summary(telegram, note));
    m_dump->Show(telegram);
    m_dump->setAccessibleDescription(lblTelegram->text());
}
