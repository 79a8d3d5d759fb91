// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtPrompts.h"

#include "BgrColour.h"
#include "FileName.h"
#include "PlainText.h"
#include "PrintPaper.h"
#include "PrinterDialog.h"
#include "WorkBox.h"

#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QPrinter>
#include <QWindow>

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

/// A box that nobody waits for. It owns no other box, because it may go at any moment, and stays
/// until it is answered, whatever becomes of the window that it stands over.
class NoticeBox final : public QMessageBox
{
  public:
    /// Belongs to the owner's window for the system, so that a modal owner does not block it.
    void ShowOver(const QWidget *owner)
    {
        setWindowModality(Qt::NonModal);
        setAttribute(Qt::WA_DeleteOnClose);
        setAttribute(Qt::WA_ShowWithoutActivating); // what is being typed goes on
        create();
        if (owner) {
            windowHandle()->setTransientParent(owner->window()->windowHandle());
            move(owner->window()->frameGeometry().center() - QRect({}, sizeHint()).center());
        }
        show();
    }
};

/// Names of strangers are in the texts: none of it is rich text.
void Furnish(QMessageBox &box, const MessagePrompt &prompt)
{
    box.setIcon(IconOf(prompt.icon));
    box.setWindowTitle(PlainText(prompt.caption));
    box.setText(PlainLines(prompt.text));
    box.setInformativeText(PlainLines(prompt.note));
    box.setTextFormat(Qt::PlainText);
    for (QLabel *label : box.findChildren<QLabel *>()) // the note has a format of its own
        label->setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    box.setDetailedText(PlainLines(prompt.details)); // with a button, if there are any
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

/// Why the file cannot be meant; empty if it can.
QString FaultOf(const QFileInfo &chosen, const FileDialogRequest &request)
{
    const bool folderMatters = (request.flags & FileDialogFlags::PathMustExist) != 0;
    if (folderMatters && !chosen.dir().exists())
        return QStringLiteral("The folder %1 does not exist.").arg(FileName::Shown(chosen.path()));
    // This character stands in listings for bytes that are no text, but in a name for itself.
    if (chosen.fileName().contains(QChar::ReplacementCharacter) && !chosen.exists()) {
        return QStringLiteral("There is no file %1. One whose name is not UTF-8 can be named on "
                              "the command line only.")
            .arg(FileName::Shown(chosen.fileName()));
    }
    return {};
}

} // namespace

/// What a box stands over. There is no active window while another program has the focus, and for
/// a moment when a box has just gone: then it is the window that a box stood over last.
QWidget *QtPrompts::Owner()
{
    const auto isShown = [](const QWidget *window) {
        return window->isVisible() && window->windowType() == Qt::Window;
    };
    for (QWidget *window : {QApplication::activeWindow(), QApplication::activeModalWidget()}) {
        if (!window || dynamic_cast<NoticeBox *>(window))
            continue;
        if (isShown(window))
            m_lastOwner = window;
        return window;
    }
    if (m_lastOwner && isShown(m_lastOwner))
        return m_lastOwner;
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto shown = std::find_if(windows.begin(), windows.end(), isShown);
    return shown == windows.end() ? nullptr : *shown;
}

QtPrompts::~QtPrompts()
{
    for (const QPointer<QMessageBox> &notice : std::as_const(m_notices))
        delete notice;
    for (const QPointer<QMessageBox> &question : std::as_const(m_questions))
        delete question;
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
    if (NoticesEnded()) {
        m_console.ShowNotice(about, prompt);
        return;
    }
    QPointer<QMessageBox> &standing = m_notices[about];
    if (standing && standing->isVisible())
        return;
    auto *box = new NoticeBox;
    standing = box;
    Furnish(*box, prompt);
    box->ShowOver(Owner());
}

void QtPrompts::Ask(const MessagePrompt &prompt, const Answered &answered)
{
    if (Ending())
        return;
    auto *box = new NoticeBox;
    m_questions << box;
    Furnish(*box, prompt);
    QObject::connect(
        box, &QMessageBox::finished, box,
        [answered, buttons = prompt.buttons](int button) { answered(AnswerOf(button, buttons)); });
    box->ShowOver(Owner());
}

QString QtPrompts::ChooseFile(const FileDialogRequest &request)
{
    if (Ending())
        return m_console.ChooseFile(request);
    QFileDialog dialog(Owner(), request.title, request.folder, NameFilter(request.filter));
    dialog.setObjectName(request.dialog);
    if (request.purpose == FileDialogRequest::Purpose::Save) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setFileMode(QFileDialog::AnyFile);
        dialog.setDefaultSuffix(request.filter.section(u'.', -1));
        dialog.setOption(QFileDialog::DontConfirmOverwrite);
    } else {
        dialog.setFileMode(QFileDialog::ExistingFile);
    }
    if (request.purpose == FileDialogRequest::Purpose::Device) {
        dialog.setOption(QFileDialog::DontUseNativeDialog); // others show no devices
        dialog.setOption(QFileDialog::DontResolveSymlinks);
        dialog.setFilter(dialog.filter() | QDir::System);
    }
    dialog.selectFile(request.name);
    while (!Ending() && dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty()) {
        const QFileInfo chosen(dialog.selectedFiles().first());
        const QString fault = FaultOf(chosen, request);
        if (fault.isEmpty())
            return QDir::toNativeSeparators(chosen.absoluteFilePath());
        ShowMessage({.text = fault, .icon = PromptIcon::Exclamation, .caption = request.title});
    }
    return {};
}

std::optional<PrinterChoice> QtPrompts::ChoosePrinter(const PrintDialogRequest &request)
{
    if (Ending())
        return m_console.ChoosePrinter(request);
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    if (!m_printer.isEmpty())
        printer->setPrinterName(m_printer);
    printer->setDocName(PlainText(request.document));
    printer->setPageMargins(PrintPaper::UsualMargins(), QPageLayout::Point);
    PrinterDialog dialog(request, printer, Owner());
    if (dialog.exec() != QDialog::Accepted || Ending())
        return {};
    m_printer = printer->printerName();
    return dialog.Choice();
}

bool QtPrompts::DoWork(const QString &what, const Work &work)
{
    WorkBox box(what, Owner());
    return box.Do(work);
}

std::optional<qint32> QtPrompts::ChooseColour(qint32 initial, const QString &title)
{
    if (Ending())
        return m_console.ChooseColour(initial, title);
    QColorDialog dialog(BgrColour::ToColour(initial), Owner());
    dialog.setWindowTitle(title);
    if (dialog.exec() != QDialog::Accepted)
        return std::nullopt;
    return BgrColour::FromColour(dialog.selectedColor());
}
