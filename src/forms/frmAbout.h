// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>

#include <functional>

class QVBoxLayout;
class Shell;
class UserPrompts;

/// The about box: what the program is, who to ask, and the way to the system's own information.
class frmAbout final : public QDialog
{
    Q_OBJECT

  public:
    struct Texts {
        QString version; ///< such as 1.2.3
        QString email;
        QString web;
    };

    /// Shell and prompts live longer than the box.
    frmAbout(const Texts &texts, Shell &shell, UserPrompts &prompts, QWidget *parent = nullptr);

    /// What "System Info..." does.
    std::function<void()> ShowSystemInformation = [] {};

  private:
    void MakeTitle(QVBoxLayout *page, const Texts &texts);
    void MakeLinks(QVBoxLayout *page, const Texts &texts);
    void MakeCredits(QVBoxLayout *page);
    void MakeButtons(QVBoxLayout *page);

    QWidget *MakeLink(const char *name, const QString &text, const QString &link);

    Shell &m_shell;
    UserPrompts &m_prompts;
};
