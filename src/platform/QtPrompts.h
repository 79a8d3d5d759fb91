// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/UserPrompts.h"

/// Prompts as message boxes over the active window.
class QtPrompts final : public UserPrompts
{
  public:
    PromptAnswer ShowMessage(const MessagePrompt &prompt) override;
    QString ChooseFile(const FileDialogRequest &request) override;
};
