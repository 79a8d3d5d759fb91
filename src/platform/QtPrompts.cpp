// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "platform/QtPrompts.h"

#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include <algorithm>

namespace
{

QMessageBox::Icon IconOf(PromptIcon icon)
{
    switch (icon) {
    case PromptIcon::None:
        return QMessageBox::NoIcon;
    case PromptIcon::Information:
        return QMessageBox::Information;
    case PromptIcon::Question:
        return QMessageBox::Question;
    case PromptIcon::Exclamation:
        return QMessageBox::Warning;
    case PromptIcon::Critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButtons ButtonsOf(PromptButtons buttons)
{
    switch (buttons) {
    case PromptButtons::Ok:
        return QMessageBox::Ok;
    case PromptButtons::OkCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case PromptButtons::YesNo:
        return QMessageBox::Yes | QMessageBox::No;
    case PromptButtons::YesNoCancel:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
    return QMessageBox::Ok;
}

QMessageBox::StandardButton ButtonOf(PromptAnswer answer)
{
    switch (answer) {
    case PromptAnswer::Ok:
        return QMessageBox::Ok;
    case PromptAnswer::Cancel:
        return QMessageBox::Cancel;
    case PromptAnswer::Yes:
        return QMessageBox::Yes;
    case PromptAnswer::No:
        return QMessageBox::No;
    }
    return QMessageBox::Ok;
}

/// What a box stands over. When another program has the focus that is no active window.
QWidget *Owner()
{
    for (QWidget *window : {QApplication::activeWindow(), QApplication::activeModalWidget()}) {
        if (window)
            return window;
    }
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto shown = std::find_if(windows.begin(), windows.end(), [](const QWidget *window) {
        return window->isVisible() && window->windowType() == Qt::Window;
    });
    return shown == windows.end() ? nullptr : *shown;
}

PromptAnswer AnswerOf(int button, PromptButtons buttons)
{
    for (const PromptAnswer answer : {PromptAnswer::Ok, PromptAnswer::Yes, PromptAnswer::No}) {
        if (button == ButtonOf(answer) && ButtonsOf(buttons).testFlag(ButtonOf(answer)))
            return answer;
    }
    return EscapeAnswer(buttons);
}

} // namespace

PromptAnswer QtPrompts::ShowMessage(const MessagePrompt &prompt)
{
    NoteIcon(prompt.icon);
    if (Ending()) {
        MessagePrompt escaped = prompt;
        escaped.defaultAnswer = EscapeAnswer(prompt.buttons);
        return m_console.ShowMessage(escaped);
    }
    QMessageBox box(IconOf(prompt.icon), prompt.caption, prompt.text, ButtonsOf(prompt.buttons),
                    Owner());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setDefaultButton(ButtonOf(prompt.defaultAnswer));
    box.setEscapeButton(ButtonOf(EscapeAnswer(prompt.buttons)));
    return AnswerOf(box.exec(), prompt.buttons);
}

QString QtPrompts::ChooseFile(const FileDialogRequest &request)
{
    if (Ending())
        return m_console.ChooseFile(request);
    QFileDialog dialog(Owner(), request.title, request.folder, request.filter.section(u'|', 0, 0));
    if (request.purpose == FileDialogRequest::Purpose::Save) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
        dialog.setDefaultSuffix(request.filter.section(u'.', -1));
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
    } else {
        dialog.setFileMode(QFileDialog::ExistingFile);
    }
    dialog.selectFile(request.name);
    while (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        const QFileInfo chosen(dialog.selectedFiles().first());
        if (chosen.dir().exists())
            return QDir::toNativeSeparators(chosen.absoluteFilePath());
        ShowMessage({.text = QStringLiteral("The folder %1 does not exist.").arg(chosen.path()),
                     .icon = PromptIcon::Exclamation,
                     .caption = request.title});
    }
    return {};
}

std::optional<qint32> QtPrompts::ChooseColour(qint32 initial, const QString &title)
{
    if (Ending())
        return m_console.ChooseColour(initial, title);
    const QColor start(initial & 0xFF, (initial >> 8) & 0xFF, (initial >> 16) & 0xFF);
    QColorDialog dialog(start, Owner());
    dialog.setWindowTitle(title);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    const QColor chosen = dialog.selectedColor();
    return chosen.red() | chosen.green() << 8 | chosen.blue() << 16;
}
