// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdHelp.h"

#include "HelpFile.h"
#include "HelpLoading.h"
#include "HelpPages.h"
#include "UserPrompts.h"
#include "frmHelp.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScopedValueRollback>

namespace
{

const QString NoHelp = QStringLiteral(
    "Unable to display Help Contents. There is no Help associated with this project.");

bool IsHelpKey(const QEvent &event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto &key = static_cast<const QKeyEvent &>(event);
    return key.key() == Qt::Key_F1 && key.modifiers() == Qt::NoModifier && !key.isAutoRepeat();
}

} // namespace

MdHelp::MdHelp(UserPrompts &prompts, Shell &shell) : m_prompts(prompts), m_shell(shell)
{
    qApp->installEventFilter(this);
}

MdHelp::~MdHelp() = default;

void MdHelp::SetFile(const QString &path)
{
    m_path = path;
    m_window.reset();
    m_file.reset();
}

void MdHelp::ShowContents()
{
    if (frmHelp *window = OpenedWindow()) {
        window->ShowContents();
        window->BringUp();
    }
}

void MdHelp::ShowSearch()
{
    if (frmHelp *window = OpenedWindow()) {
        window->ShowSearch();
        window->BringUp();
    }
}

void MdHelp::ShowPageOf(const QWidget *widget)
{
    if (frmHelp *window = OpenedWindow()) {
        window->ShowPage(QString::fromLatin1(HelpPages::PageOf(widget)));
        window->BringUp();
    }
}

bool MdHelp::eventFilter(QObject *watched, QEvent *event)
{
    const auto *widget = qobject_cast<const QWidget *>(watched);
    if (!widget || !IsHelpKey(*event) || QApplication::activePopupWidget())
        return QObject::eventFilter(watched, event);
    ShowPageOf(widget);
    return true;
}

frmHelp *MdHelp::OpenedWindow()
{
    if (m_path.isEmpty()) {
        Tell(InformationMessage(NoHelp));
        return nullptr;
    }
    const Result opened = m_window ? m_file->Check() : OpenFile();
    if (opened.Failed()) {
        Tell(CriticalMessage(QStringLiteral("The help file %1 could not be opened. ").arg(m_path) +
                             opened.Cause()));
        return nullptr;
    }
    return m_window.get();
}

Result MdHelp::OpenFile()
{
    auto [file, opened] = LoadHelpFile();
    if (!opened.Failed())
        opened = file->Open(m_path);
    if (!opened.Failed()) {
        m_file = std::move(file);
        m_window = std::make_unique<frmHelp>(*m_file, m_shell, m_prompts);
    }
    return opened;
}

/// F1 in the message itself brings up no further one.
void MdHelp::Tell(const MessagePrompt &prompt)
{
    if (m_telling)
        return;
    const QScopedValueRollback<bool> telling(m_telling, true);
    m_prompts.ShowMessage(prompt);
}
