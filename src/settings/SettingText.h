// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <variant>

/// Where a setting is held in memory. The alternative is also its type in the store.
using SettingField = std::variant<qint32 *, qint16 *, bool *, float *, QString *>;

/// How a flag is written; both forms, and any whole number, are understood on reading.
enum class FlagForm { Words, Digits };

/// Converts a stored text into the field. False, and the field unchanged, if it does not convert:
/// whole numbers must fit their type, a float must be finite, a flag must be "True" or "False" in
/// any case or a whole number of 16 bits.
bool ReadSetting(const QString &text, const SettingField &field);

/// The text to store: shortest form, a full stop in floats and never an exponent.
QString WriteSetting(const SettingField &field, FlagForm form);

/// What a text for the field should be, in words for a message.
QString WantedText(const SettingField &field);
