// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Shell.h"

#include "UserPrompts.h"

void FollowLink(Shell &shell, UserPrompts &prompts, const QString &link)
{
    if (const Result opened = shell.Open(link); opened.Failed())
        prompts.ShowMessage(
            CriticalMessage(QStringLiteral("%1 could not be opened. ").arg(link) + opened.Cause()));
}
