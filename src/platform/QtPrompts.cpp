// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "platform/QtPrompts.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>

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

/// Escape and the frame's close button say No where there is no Cancel.
QMessageBox::StandardButton EscapeOf(PromptButtons buttons)
{
    switch (buttons) {
    case PromptButtons::Ok:
        return QMessageBox::Ok;
    case PromptButtons::YesNo:
        return QMessageBox::No;
    default:
        return QMessageBox::Cancel;
    }
}

PromptAnswer AnswerOf(int button, PromptButtons buttons)
{
    for (const PromptAnswer answer : {PromptAnswer::Ok, PromptAnswer::Yes, PromptAnswer::No}) {
        if (button == ButtonOf(answer) && ButtonsOf(buttons).testFlag(ButtonOf(answer)))
            return answer;
    }
    return buttons == PromptButtons::YesNo ? PromptAnswer::No : PromptAnswer::Cancel;
}

} // namespace

PromptAnswer QtPrompts::ShowMessage(const MessagePrompt &prompt)
{
    NoteIcon(prompt.icon);
    QMessageBox box(IconOf(prompt.icon), prompt.caption, prompt.text, ButtonsOf(prompt.buttons),
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setDefaultButton(ButtonOf(prompt.defaultAnswer));
    box.setEscapeButton(EscapeOf(prompt.buttons));
    return AnswerOf(box.exec(), prompt.buttons);
}

QString QtPrompts::ChooseFile(const FileDialogRequest &request)
{
    QFileDialog dialog(QApplication::activeWindow(), request.title, request.folder,
                       request.filter.section(u'|', 0, 0));
    if (request.purpose == FileDialogRequest::Purpose::Save) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
        dialog.setDefaultSuffix(request.filter.section(u'.', -1));
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
    } else {
        dialog.setFileMode(QFileDialog::ExistingFile);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return QDir::toNativeSeparators(dialog.selectedFiles().first());
}
