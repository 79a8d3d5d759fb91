// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ConsolePrompts.h"

#include <functional>

/// What the user of a window would be told: a failure goes to the run, which decides what becomes
/// of it, all else is a line of text.
class RunPrompts final : public UserPrompts
{
  public:
    struct Calls {
        std::function<void(const QString &text)> failed;
        std::function<void(const QString &text)> noticed;
    };

    explicit RunPrompts(Calls calls) : m_calls(std::move(calls)) {}

    /// Events go on meanwhile, signals and time limits among them.
    bool DoWork(const QString &what, const Work &work) override;
    /// Work is not wanted any more, be it under way or yet to come.
    void EndWork();

    PromptAnswer ShowMessage(const MessagePrompt &prompt) override
    {
        NoteIcon(prompt.icon);
        const QString text = ConsolePrompts::OneLine(prompt);
        (prompt.icon == PromptIcon::Critical ? m_calls.failed : m_calls.noticed)(text);
        return prompt.defaultAnswer;
    }
    void ShowNotice(const QString &, const MessagePrompt &prompt) override { ShowMessage(prompt); }
    QString ChooseFile(const FileDialogRequest &) override { return {}; }
    std::optional<PrinterChoice> ChoosePrinter(const PrintDialogRequest &) override { return {}; }
    std::optional<qint32> ChooseColour(qint32, const QString &) override { return {}; }

  private:
    Calls m_calls;
    WorkProgress *m_progress = nullptr; ///< of the work that is under way
    bool m_workEnded = false;
};
