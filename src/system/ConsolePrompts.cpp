// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ConsolePrompts.h"

#include "PlainText.h"

#include <utility>

namespace
{

QString KindOf(const MessagePrompt &prompt)
{
    if (prompt.buttons != PromptButtons::Ok)
        return QStringLiteral("question");
    switch (prompt.icon) {
    case PromptIcon::Critical:
        return QStringLiteral("critical");
    case PromptIcon::Exclamation:
        return QStringLiteral("warning");
    default:
        return QStringLiteral("information");
    }
}

QString AnswerText(PromptAnswer answer)
{
    switch (answer) {
    case PromptAnswer::Ok:
        return QStringLiteral("OK");
    case PromptAnswer::Cancel:
        return QStringLiteral("Cancel");
    case PromptAnswer::Yes:
        return QStringLiteral("Yes");
    case PromptAnswer::No:
        return QStringLiteral("No");
    }
    return {};
}

} // namespace

/// What others have named must not take a terminal over.
QString ConsolePrompts::OneLine(const MessagePrompt &prompt)
{
    QString line = prompt.text;
    for (const QString &further : {prompt.note, prompt.details}) {
        if (!further.isEmpty())
            line += QStringLiteral(" (%1)").arg(further.split(u'\n').join(QLatin1String("; ")));
    }
    return PlainText(line.replace(u'\r', u' ').replace(u'\n', u' '));
}

PromptAnswer ConsolePrompts::ShowMessage(const MessagePrompt &prompt)
{
    NoteIcon(prompt.icon);
    m_out << KindOf(prompt) << ": " << OneLine(prompt);
    if (prompt.buttons != PromptButtons::Ok)
        m_out << " -> " << AnswerText(prompt.defaultAnswer);
    m_out << '\n' << Qt::flush;
    return prompt.defaultAnswer;
}

void ConsolePrompts::ShowNotice(const QString &about, const MessagePrompt &prompt)
{
    if (std::exchange(m_noticed[about], prompt.text) != prompt.text)
        ShowMessage(prompt);
}

QString ConsolePrompts::ChooseFile(const FileDialogRequest &request)
{
    TellCancelled(request.title);
    return {};
}

std::optional<PrinterChoice> ConsolePrompts::ChoosePrinter(const PrintDialogRequest &request)
{
    TellCancelled(QStringLiteral("Print ") + request.document);
    return std::nullopt;
}

std::optional<qint32> ConsolePrompts::ChooseColour(qint32, const QString &title)
{
    TellCancelled(title);
    return std::nullopt;
}

void ConsolePrompts::TellCancelled(const QString &title)
{
    m_out << "question: " << title << " -> " << AnswerText(PromptAnswer::Cancel) << '\n'
          << Qt::flush;
}
