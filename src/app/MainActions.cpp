// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MainActions.h"

#include "Icons.h"
#include "NumberedMenu.h"
#include "PlainText.h"

#include <QAction>
#include <QMenuBar>
#include <QToolBar>

#include <algorithm>

namespace
{

QString Text(const char *latin)
{
    return QString::fromLatin1(latin);
}

QAction *Named(QAction *action, const char *name)
{
    action->setObjectName(Text(name));
    return action;
}

} // namespace

MainActions::MainActions(QWidget &window) : QObject(&window), m_window(window) {}

QAction *MainActions::MakeAction(Command command, const QString &text, const char *shortcut)
{
    auto *action = new QAction(text, &m_window);
    if (shortcut)
        action->setShortcut(QKeySequence(Text(shortcut)));
    connect(action, &QAction::triggered, this, [this, command] { Q_EMIT Chosen(command); });
    m_actions.emplace(command, action);
    return action;
}

void MainActions::FillMenus(QMenuBar &bar)
{
    NumberedMenu *menu = nullptr;
    for (const MainCommands::MenuEntry &entry : MainCommands::Menus()) {
        if (entry.opensMenu) {
            menu = new NumberedMenu(Text(entry.caption), &bar);
            menu->setObjectName(Text(entry.name));
            bar.addMenu(menu);
            continue;
        }
        QAction *action = entry.caption
                              ? MakeAction(entry.command, Text(entry.caption), entry.shortcut)
                              : new QAction(&m_window);
        action->setSeparator(!entry.caption);
        action->setCheckable(entry.ticks);
        Q_ASSERT(menu); // the table begins with one
        menu->addAction(Named(action, entry.name));
        if (entry.command == Command::OpenRecent) {
            menu->Number(action);
            m_recent << action;
        }
    }
    m_recentBar = m_window.findChild<QAction *>(QStringLiteral("mnuFileBar2"));
    m_recentBar->setVisible(false);
    for (QAction *recent : std::as_const(m_recent)) {
        recent->setVisible(false);
        connect(recent, &QAction::triggered, this,
                [this, recent] { Q_EMIT RecentProjectChosen(recent->data().toString()); });
    }
}

/// The text is also kept beside the caption, in which "&" has to stand doubled.
void MainActions::ShowRecentProjects(const QStringList &projects)
{
    for (qsizetype i = 0; i < std::min(projects.size(), m_recent.size()); ++i) {
        m_recentBar->setVisible(true);
        m_recent[i]->setText(PlainText(projects[i]).replace(u'&', QLatin1String("&&")));
        m_recent[i]->setData(projects[i]);
        m_recent[i]->setVisible(true);
    }
}

void MainActions::FillToolbar(QToolBar &bar)
{
    bar.setIconSize({24, 24});
    for (const MainCommands::ToolbarButton &button : MainCommands::Toolbar()) {
        if (!button.key) {
            bar.addSeparator();
            continue;
        }
        QAction *action = MakeAction(button.command, Text(button.key), button.shortcut);
        action->setIcon(Icons::Named(button.image));
        action->setToolTip(Text(button.toolTip));
        bar.addAction(action);
        QWidget *widget = bar.widgetForAction(action);
        widget->setFocusPolicy(Qt::TabFocus);
        widget->setAccessibleName(Text(button.toolTip));
    }
}

void MainActions::AddKeys()
{
    for (const MainCommands::KeyCommand &key : MainCommands::Keys())
        m_window.addAction(
            Named(MakeAction(key.command, Text(key.caption), key.shortcut), key.name));
}

/// Empty if the command has none.
QString MainActions::KeyOf(Command command) const
{
    const auto [first, last] = m_actions.equal_range(command);
    const auto keyed = std::find_if(
        first, last, [](const auto &entry) { return !entry.second->shortcut().isEmpty(); });
    return keyed == last ? QString() : keyed->second->shortcut().toString(QKeySequence::NativeText);
}

/// Their keys are only shown: a second action with the same key would leave none of them working.
QList<QAction *> MainActions::ViewEntries()
{
    QList<QAction *> entries;
    for (const MainCommands::ViewEntry &entry : MainCommands::ViewMenu()) {
        if (!entry.caption) {
            entries << new QAction(&m_window);
            entries.last()->setSeparator(true);
            continue;
        }
        const QString key = KeyOf(entry.command);
        const QString caption = Text(entry.caption) + (key.isEmpty() ? key : u'\t' + key);
        entries << Named(MakeAction(entry.command, caption, nullptr), entry.name);
        entries.last()->setCheckable(entry.ticks);
    }
    return entries;
}

void MainActions::Enable(Command command, bool enabled)
{
    const auto [first, last] = m_actions.equal_range(command);
    std::for_each(first, last, [enabled](const auto &entry) { entry.second->setEnabled(enabled); });
}

bool MainActions::Enabled(Command command) const
{
    return m_actions.find(command)->second->isEnabled();
}

void MainActions::SetTicked(Command command, bool ticked)
{
    const auto [first, last] = m_actions.equal_range(command);
    std::for_each(first, last, [ticked](const auto &entry) { entry.second->setChecked(ticked); });
}
