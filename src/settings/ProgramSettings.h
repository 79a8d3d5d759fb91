// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QStringList>

class MdSequenceEdition;
class SettingsStore;
struct StoredSettings;

/// Loads and saves the user's settings. One table holds every section, key, type and default.
namespace ProgramSettings
{

/// Sets Active in every receive record, then reads all settings of the subjects given; missing keys
/// give the defaults. MainWidth, MainHeight and the project folder keep what they hold if they are
/// missing. Fails at the first text that does not convert, with a cause that is for the user; some
/// settings take their default instead and add a notice for him. The store is not written.
Result LoadSettings(const SettingsStore &store, const StoredSettings &settings,
                    MdSequenceEdition &sequences, QStringList &notices);

/// Writes all settings; the window's place is left as stored if the window is minimised.
Result SaveSettings(SettingsStore &store, const StoredSettings &settings, bool minimised);

} // namespace ProgramSettings
