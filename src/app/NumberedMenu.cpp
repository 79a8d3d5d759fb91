// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "NumberedMenu.h"

#include <QKeyEvent>
#include <QStyleOptionMenuItem>

/// Chooses by Enter, which also closes the menu and the bar that it hangs from. On some keyboards
/// digits are typed with Shift.
void NumberedMenu::keyPressEvent(QKeyEvent *event)
{
    const auto modifiers = event->modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier);
    QAction *entry = modifiers ? nullptr : m_numbered.value(event->key() - Qt::Key_1);
    if (!entry || !entry->isVisible() || !entry->isEnabled()) {
        QMenu::keyPressEvent(event);
        return;
    }
    setActiveAction(entry);
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QMenu::keyPressEvent(&enter);
}

void NumberedMenu::initStyleOption(QStyleOptionMenuItem *option, const QAction *action) const
{
    QMenu::initStyleOption(option, action);
    const qsizetype number = m_numbered.indexOf(action) + 1;
    if (number > 0 && !option->text.contains(u'\t'))
        option->text += u'\t' + QString::number(number);
}
