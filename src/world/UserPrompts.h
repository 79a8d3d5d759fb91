// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileDialogRequest.h"
#include "FileName.h"
#include "PrintDialogRequest.h"
#include "WorkProgress.h"

#include <QString>

#include <functional>
#include <optional>

enum class PromptIcon { None, Information, Question, Exclamation, Critical };
enum class PromptButtons { Ok, OkCancel, YesNo, YesNoCancel };
enum class PromptAnswer { Ok, Cancel, Yes, No };

/// One message box, complete.
struct MessagePrompt {
    QString text;
    PromptIcon icon = PromptIcon::None;
    PromptButtons buttons = PromptButtons::Ok;
    PromptAnswer defaultAnswer = PromptAnswer::Ok;
    QString caption = QStringLiteral("Serimonde");
    /// What stands behind a text that names no cause, as lines: the thing first, then what is wrong
    /// with it. Shown when the user asks for it; empty for none.
    QString details{};
    /// A line of its own below the text, which it leaves as it is; empty for none.
    QString note{};

    bool operator==(const MessagePrompt &) const = default;
};

/// The one door for everything that asks or tells the user something in a box of its own. Calls
/// return when the user has answered; the program's events go on meanwhile.
class UserPrompts
{
  public:
    virtual ~UserPrompts() = default;

    virtual PromptAnswer ShowMessage(const MessagePrompt &prompt) = 0;

    /// Tells something without waiting for the user, whose other windows stay in use. While the
    /// box of an earlier notice about the same still stands, this one opens none.
    virtual void ShowNotice(const QString &about, const MessagePrompt &prompt) = 0;

    /// Asks without waiting for the user, whose other windows stay in use; answered is called when
    /// he has chosen. Where nobody waits for a hand, nothing is asked and nothing called.
    using Answered = std::function<void(PromptAnswer)>;
    virtual void Ask(const MessagePrompt &prompt, const Answered &answered)
    {
        Q_UNUSED(prompt)
        Q_UNUSED(answered)
    }

    /// The chosen path, absolute; empty if the user cancelled.
    virtual QString ChooseFile(const FileDialogRequest &request) = 0;

    /// The chosen printer; nothing if the user cancelled.
    virtual std::optional<PrinterChoice> ChoosePrinter(const PrintDialogRequest &request) = 0;

    /// The chosen colour, starting from a given one, both 0x00BBGGRR; none if the user cancelled.
    virtual std::optional<qint32> ChooseColour(qint32 initial, const QString &title) = 0;

    /// Does work that may take long on a thread of its own, and returns when it is done; it uses
    /// nothing that others change meanwhile. Windows are painted but take no commands, and after a
    /// while the user sees what is done, how far it is, and may cancel. False if the program ends
    /// and the work does not: it then goes on until the process is gone.
    using Work = std::function<void(WorkProgress &progress)>;
    virtual bool DoWork(const QString &what, const Work &work)
    {
        Q_UNUSED(what)
        WorkProgress progress;
        work(progress);
        return true;
    }

    /// The system ends the program: from now on nothing waits for a hand, every prompt returns at
    /// once as if the user had escaped from it.
    void EndUnasked() { m_ending = true; }

    /// No event will be handled any more: notices are lines of text from now on.
    void EndNotices() { m_noticesEnded = true; }

    /// Whether a message with the critical icon has been shown in this run.
    bool CriticalShown() const { return m_criticalShown; }

  protected:
    void NoteIcon(PromptIcon icon) { m_criticalShown |= icon == PromptIcon::Critical; }

    bool Ending() const { return m_ending; }
    bool NoticesEnded() const { return m_ending || m_noticesEnded; }

  private:
    bool m_criticalShown = false;
    bool m_ending = false;
    bool m_noticesEnded = false;
};

/// What Escape and the frame's close button answer: No where there is no Cancel.
inline PromptAnswer EscapeAnswer(PromptButtons buttons)
{
    switch (buttons) {
    case PromptButtons::Ok:
        return PromptAnswer::Ok;
    case PromptButtons::YesNo:
        return PromptAnswer::No;
    default:
        return PromptAnswer::Cancel;
    }
}

inline MessagePrompt CriticalMessage(const QString &text, const QString &details = {})
{
    return {.text = text, .icon = PromptIcon::Critical, .details = details};
}

inline MessagePrompt ExclamationMessage(const QString &text)
{
    return {.text = text, .icon = PromptIcon::Exclamation};
}

inline MessagePrompt InformationMessage(const QString &text)
{
    return {.text = text, .icon = PromptIcon::Information};
}

/// Whether a file may take the place of the one that is there.
inline MessagePrompt ReplaceQuestion(const QString &path,
                                     const QString &caption = MessagePrompt().caption)
{
    return {.text = QStringLiteral("%1 already exists. Do you want to replace it?")
                        .arg(FileName::Shown(path)),
            .icon = PromptIcon::Exclamation,
            .buttons = PromptButtons::YesNo,
            .defaultAnswer = PromptAnswer::No,
            .caption = caption};
}
