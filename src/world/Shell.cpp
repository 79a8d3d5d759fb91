// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Shell.h"

#include "UserPrompts.h"

void FollowLink(Shell &shell, UserPrompts &prompts, const QString &link)
{
    const QString fault = shell.Open(link);
    if (!fault.isEmpty())
        prompts.ShowMessage(
            CriticalMessage(QStringLiteral("%1 could not be opened. ").arg(link) + fault));
}
