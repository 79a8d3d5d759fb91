// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class QLabel;
class TelegramDump;
struct Telegram;

/// One telegram in full: what there is to say of it, and below that its bytes.
class TelegramDetails final : public QWidget
{
    Q_OBJECT

  public:
    explicit TelegramDetails(QWidget *parent = nullptr);

    /// Ports are those of the source, by channel; the remark is what else is said of it.
    void Show(const Telegram &telegram, const QStringList &ports, const QString &remark);
    TelegramDump &Dump() const { return *m_dump; }

  private:
    QLabel *lblTelegram;
    TelegramDump *m_dump;
};
