// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <optional>

class MdSequenceEdition;
class SettingsStore;
struct StoredSettings;

/// Loads and saves the user's settings. One table holds every section, key, type and default.
namespace ProgramSettings
{

/// A stored text that does not convert to the type of its setting.
struct BadSetting {
    QString section;
    QString key;
    QString text;
    QString wanted; ///< what the text should be, such as "a whole number from -32768 to 32767"

    /// The message for the user.
    QString Message() const;
};

/// Sets Active in every receive record, then reads all settings of the subjects given; missing keys
/// give the defaults. MainWidth, MainHeight and the project folder keep what they hold if they are
/// missing. Stops at the first text that does not convert. The store is not written.
std::optional<BadSetting> LoadSettings(const SettingsStore &store, const StoredSettings &settings,
                                       MdSequenceEdition &sequences);

/// Writes all settings; the window's place is left as stored if the window is minimised.
/// Returns the cause if the store cannot take them, else an empty text.
QString SaveSettings(SettingsStore &store, const StoredSettings &settings, bool minimised);

} // namespace ProgramSettings
