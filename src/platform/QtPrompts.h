// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ConsolePrompts.h"

/// Prompts as message boxes over the active window; once the program is being ended, lines of text.
class QtPrompts final : public UserPrompts
{
  public:
    /// The stream must live as long as this object.
    explicit QtPrompts(QTextStream &errors) : m_console(errors) {}

    PromptAnswer ShowMessage(const MessagePrompt &prompt) override;
    QString ChooseFile(const FileDialogRequest &request) override;
    std::optional<qint32> ChooseColour(qint32 initial, const QString &title) override;

  private:
    ConsolePrompts m_console;
};
