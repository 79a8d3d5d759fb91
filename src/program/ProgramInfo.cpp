// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ProgramInfo.h"

namespace ProgramInfo
{

QString Version()
{
    return QStringLiteral(SERIMONDE_VERSION);
}

QString SupportEmail()
{
    return QStringLiteral(SERIMONDE_EMAIL);
}

QString WebSite()
{
    return QStringLiteral(SERIMONDE_WEB);
}

} // namespace ProgramInfo
