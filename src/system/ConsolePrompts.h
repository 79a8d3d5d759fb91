// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "UserPrompts.h"

#include <QHash>
#include <QTextStream>

/// Prompts of an unattended run: each message is one line of text with its details, each question
/// gets its default answer, so nothing waits for a hand.
class ConsolePrompts final : public UserPrompts
{
  public:
    /// The stream must live as long as this object.
    explicit ConsolePrompts(QTextStream &out) : m_out(out) {}

    /// The whole message as one line: note and details stand behind the text, each in brackets.
    static QString OneLine(const MessagePrompt &prompt);

    PromptAnswer ShowMessage(const MessagePrompt &prompt) override;
    /// One line, and no other about the same until it has something else to say: a log on a full
    /// disk must not flood what nobody may be reading.
    void ShowNotice(const QString &about, const MessagePrompt &prompt) override;
    QString ChooseFile(const FileDialogRequest &request) override;
    std::optional<PrinterChoice> ChoosePrinter(const PrintDialogRequest &request) override;
    std::optional<qint32> ChooseColour(qint32 initial, const QString &title) override;

  private:
    void TellCancelled(const QString &title);

    QTextStream &m_out;
    QHash<QString, QString> m_noticed; ///< what was told last, by what it is about
};
