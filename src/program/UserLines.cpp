// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "UserLines.h"

#include "MdSequenceEdition.h"
#include "ProgramSettings.h"
#include "StoredSettings.h"
#include "SystemPortName.h"

UserLines::UserLines()
    : m_store(m_files, QtSettingsStore::UserPath()),
      state(m_store.State()),
      devices(m_store, SystemPortName)
{
    StoredSettings settings;
    settings.comm = &comm.stored;
    MdSequenceEdition none;
    QStringList notices;
    if (!state.Failed())
        state = ProgramSettings::LoadSettings(m_store, settings, none, notices);
    if (state.Failed())
        comm.stored = {};
}
