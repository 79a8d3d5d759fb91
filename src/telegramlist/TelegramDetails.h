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

    /// The note is the user's, empty for none.
    void Show(const Telegram &telegram, const QString &note);
    /// None is chosen.
    void Clear();
    TelegramDump &Dump() const { return *m_dump; }

  private:
    QLabel *lblTelegram;
    TelegramDump *m_dump;
};
