// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ConsolePrompts.h"

#include <QHash>
#include <QList>
#include <QPointer>

class QMessageBox;
class QWidget;

/// Prompts as message boxes over the active window; once the program is being ended, lines of text.
class QtPrompts final : public UserPrompts
{
  public:
    /// The stream must live as long as this object.
    explicit QtPrompts(QTextStream &errors) : m_console(errors) {}
    ~QtPrompts() override;
    Q_DISABLE_COPY_MOVE(QtPrompts)

    PromptAnswer ShowMessage(const MessagePrompt &prompt) override;
    void ShowNotice(const QString &about, const MessagePrompt &prompt) override;
    void Ask(const MessagePrompt &prompt, const Answered &answered) override;
    QString ChooseFile(const FileDialogRequest &request) override;
    std::optional<PrinterChoice> ChoosePrinter(const PrintDialogRequest &request) override;
    bool DoWork(const QString &what, const Work &work) override;
    std::optional<qint32> ChooseColour(qint32 initial, const QString &title) override;

  private:
    QWidget *Owner();

    QPointer<QWidget> m_lastOwner; ///< a window, not a dialog
    QString m_printer;             ///< chosen last in this run; empty for the system's default
    ConsolePrompts m_console;
    QHash<QString, QPointer<QMessageBox>> m_notices; ///< by what they are about
    QList<QPointer<QMessageBox>> m_questions;
};
