// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringView>

#include <optional>

/// A moment as a user types it.
namespace TelegramMoment
{

/// The text as local time, in nanoseconds since 1970: "03:12", "03:12:44" or "03:12:44.25", alone
/// or behind a day as "2026-11-22 03:12:44"; or a day alone, which is its beginning. A time without
/// a day is the last such moment that is not behind latest. Nothing for another text.
std::optional<qint64> Of(QStringView text, qint64 latest);

} // namespace TelegramMoment
