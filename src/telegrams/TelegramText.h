// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Telegram.h"

/// Telegrams as texts of one line each, for whoever shows or writes them.
namespace TelegramText
{

/// Day and local time in microseconds, of ns since 1970: "2026-11-22 03:12:44.123456".
QString Time(qint64 wall);
/// Seconds with microseconds, of ns: "0.010500".
QString Duration(qint64 time);
/// The port's name, or the channel's number where the capture tells none.
QString Port(const Telegram &telegram);
/// "received", "sent", or what else happened.
QString Kind(const Telegram &telegram);
QString Names(const Telegram &telegram);
/// Its marks in words, and its remark.
QString Details(const Telegram &telegram);
QString Hex(QByteArrayView bytes); ///< "48 65"
/// With the pictures of control characters: one character a byte.
QString Characters(QByteArrayView bytes);

} // namespace TelegramText

/// Writes telegrams in one form, one after the other, in UTF-8.
class TelegramWriter final
{
  public:
    enum class Form {
        Text,
        Csv,
        CArray ///< an array for each that has bytes
    };

    explicit TelegramWriter(Form form) : m_form(form) {}

    QByteArray Head() const;
    QByteArray Row(const Telegram &telegram);

  private:
    QByteArray CsvRow(const Telegram &telegram, const QString &apart) const;

    const Form m_form;
    qint64 m_last = 0; ///< time of the row before
    bool m_isFirst = true;
};
