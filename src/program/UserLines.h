// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommConfiguration.h"
#include "PortDevices.h"
#include "QtSettingsStore.h"
#include "SystemFiles.h"

/// What the user has set of his lines in Serimonde. It is read once, and nothing is written.
class UserLines final
{
    SystemFiles m_files;
    QtSettingsStore m_store;

  public:
    UserLines();

    /// Why the settings could not be read; all is then as if there were none.
    Result state;
    CommConfiguration comm;
    PortDevices devices;
};
