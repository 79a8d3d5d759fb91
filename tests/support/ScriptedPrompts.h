// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "UserPrompts.h"

#include <QList>
#include <QStringList>

#include <functional>

/// The door for messages in tests: notes every box and answers as the test says, else with the
/// box's own default.
class ScriptedPrompts : public UserPrompts
{
  public:
    QList<MessagePrompt> shown;
    QList<PromptAnswer> answers;                 ///< for the next boxes, first one first
    QList<FileDialogRequest> asked;              ///< file dialogs
    QList<MessagePrompt> notices;                ///< those that opened a box
    QList<MessagePrompt> questions;              ///< that nobody waits for
    QList<PromptAnswer> laterAnswers;            ///< for the next of them; empty: unanswered
    QStringList standing;                        ///< what boxes of notices are about, until closed
    QStringList chosen;                          ///< for the next file dialogs; empty: cancelled
    QList<PrintDialogRequest> printsAsked;       ///< print dialogs
    std::optional<PrinterChoice> printer;        ///< what they are answered; empty: cancelled
    std::function<void()> whileStanding = [] {}; ///< what happens while a box is open
    WorkProgress *atWork = nullptr;              ///< of the work under way, if there is any
    std::function<void()> beforeWork = [] {};

    QList<std::pair<QString, qint32>> coloursAsked; ///< titles and first colours of dialogs
    QList<qint32> colours;                          ///< for the next ones; empty: cancelled

    PromptAnswer ShowMessage(const MessagePrompt &prompt) override
    {
        NoteIcon(prompt.icon);
        shown << prompt;
        whileStanding();
        return answers.isEmpty() ? prompt.defaultAnswer : answers.takeFirst();
    }

    void ShowNotice(const QString &about, const MessagePrompt &prompt) override
    {
        NoteIcon(prompt.icon);
        if (standing.contains(about))
            return;
        standing << about;
        notices << prompt;
    }

    void Ask(const MessagePrompt &prompt, const Answered &answered) override
    {
        questions << prompt;
        if (!laterAnswers.isEmpty())
            answered(laterAnswers.takeFirst());
    }

    QString ChooseFile(const FileDialogRequest &request) override
    {
        asked << request;
        whileStanding();
        return chosen.isEmpty() ? QString() : chosen.takeFirst();
    }

    std::optional<PrinterChoice> ChoosePrinter(const PrintDialogRequest &request) override
    {
        printsAsked << request;
        return printer;
    }

    bool DoWork(const QString &, const Work &work) override
    {
        WorkProgress progress;
        atWork = &progress;
        beforeWork();
        work(progress);
        atWork = nullptr;
        return true;
    }

    std::optional<qint32> ChooseColour(qint32 initial, const QString &title) override
    {
        coloursAsked.append({title, initial});
        return colours.isEmpty() ? std::nullopt : std::optional(colours.takeFirst());
    }
};
