// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "platform/QtPrompts.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include <algorithm>
#include <utility>

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

/// A box that nobody waits for. It owns no other box, because it may go at any moment.
class NoticeBox final : public QMessageBox
{
  public:
    using QMessageBox::QMessageBox;
};

/// What a box stands over. When another program has the focus that is no active window.
QWidget *Owner()
{
    for (QWidget *window : {QApplication::activeWindow(), QApplication::activeModalWidget()}) {
        while (dynamic_cast<NoticeBox *>(window))
            window = window->parentWidget();
        if (window)
            return window;
    }
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto shown = std::find_if(windows.begin(), windows.end(), [](const QWidget *window) {
        return window->isVisible() && window->windowType() == Qt::Window;
    });
    return shown == windows.end() ? nullptr : *shown;
}

void Furnish(QMessageBox &box, const MessagePrompt &prompt)
{
    box.setIcon(IconOf(prompt.icon));
    box.setWindowTitle(prompt.caption);
    box.setText(prompt.text);
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setStandardButtons(ButtonsOf(prompt.buttons));
    box.setDefaultButton(ButtonOf(prompt.defaultAnswer));
    box.setEscapeButton(ButtonOf(EscapeAnswer(prompt.buttons)));
}

PromptAnswer AnswerOf(int button, PromptButtons buttons)
{
    for (const PromptAnswer answer : {PromptAnswer::Ok, PromptAnswer::Yes, PromptAnswer::No}) {
        if (button == ButtonOf(answer) && ButtonsOf(buttons).testFlag(ButtonOf(answer)))
            return answer;
    }
    return EscapeAnswer(buttons);
}

/// In the form of the toolkit, which wants the pattern in brackets.
QString NameFilter(const QString &filter)
{
    const QString description = filter.section(u'|', 0, 0).trimmed();
    const QString pattern = filter.section(u'|', 1).trimmed();
    return description.contains(pattern) ? description
                                         : QStringLiteral("%1 (%2)").arg(description, pattern);
}

} // namespace

QtPrompts::~QtPrompts()
{
    for (const QPointer<QMessageBox> &notice : std::as_const(m_notices))
        delete notice;
}

PromptAnswer QtPrompts::ShowMessage(const MessagePrompt &prompt)
{
    NoteIcon(prompt.icon);
    if (Ending()) {
        MessagePrompt escaped = prompt;
        escaped.defaultAnswer = EscapeAnswer(prompt.buttons);
        return m_console.ShowMessage(escaped);
    }
    QMessageBox box(Owner());
    Furnish(box, prompt);
    return AnswerOf(box.exec(), prompt.buttons);
}

void QtPrompts::ShowNotice(const QString &about, const MessagePrompt &prompt)
{
    NoteIcon(prompt.icon);
    if (Ending()) {
        m_console.ShowNotice(about, prompt);
        return;
    }
    QPointer<QMessageBox> &standing = m_notices[about];
    if (standing && standing->isVisible())
        return;
    standing = new NoticeBox(Owner());
    Furnish(*standing, prompt);
    standing->setWindowModality(Qt::NonModal);
    standing->setAttribute(Qt::WA_DeleteOnClose);
    standing->setAttribute(Qt::WA_ShowWithoutActivating); // what is being typed goes on
    standing->show();
}

QString QtPrompts::ChooseFile(const FileDialogRequest &request)
{
    if (Ending())
        return m_console.ChooseFile(request);
    QFileDialog dialog(Owner(), request.title, request.folder, NameFilter(request.filter));
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
        const bool folderMatters = (request.flags & FileDialogFlags::PathMustExist) != 0;
        if (!folderMatters || chosen.dir().exists())
            return QDir::toNativeSeparators(chosen.absoluteFilePath());
        ShowMessage({.text = QStringLiteral("The folder %1 does not exist.").arg(chosen.path()),
                     .icon = PromptIcon::Exclamation,
                     .caption = request.title});
    }
    return {};
}
