// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// What the program can say of itself; all of it is set in CMake and nowhere else.
namespace ProgramInfo
{

/// Major, minor and revision, such as 1.2.3.
QString Version();

/// Where users find help; the build settings SERIMONDE_EMAIL and SERIMONDE_WEB.
QString SupportEmail();
QString WebSite();

} // namespace ProgramInfo
