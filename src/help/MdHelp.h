// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QObject>

#include <memory>

class HelpFile;
class Shell;
class UserPrompts;
class frmHelp;
struct MessagePrompt;

/// The help: its file, its window, its commands, and the F1 key in every form of the program. The
/// file is opened when it is first asked for.
class MdHelp final : public QObject
{
    Q_OBJECT

  public:
    /// Prompts and shell live longer than the help.
    MdHelp(UserPrompts &prompts, Shell &shell);
    ~MdHelp() override;

    /// Where the help file is; an empty path says that there is none.
    void SetFile(const QString &path);
    QString File() const { return m_path; }

    /// These tell the user why, should the file not be readable.
    void ShowContents();
    void ShowSearch();
    /// The page of the form that the widget lies in.
    void ShowPageOf(const QWidget *widget);

    /// Null before the file was opened.
    frmHelp *Window() const { return m_window.get(); }

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    frmHelp *OpenedWindow();
    Result OpenFile();
    void Tell(const MessagePrompt &prompt);

    UserPrompts &m_prompts;
    Shell &m_shell;
    QString m_path;
    bool m_telling = false; ///< a message of the help stands
    std::unique_ptr<HelpFile> m_file;
    std::unique_ptr<frmHelp> m_window; ///< shows the file
};
