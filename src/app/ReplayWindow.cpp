// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ReplayWindow.h"

#include "frmReplay.h"

ReplayWindow::ReplayWindow(const ReplayParts &parts, QWidget &owner)
    : m_replay(parts), m_owner(owner)
{
    QObject::connect(&m_replay, &MdReplay::Changed, &m_replay, [this] {
        if (m_replay.Stands() == MdReplay::State::Opening)
            Show();
    });
}

ReplayWindow::~ReplayWindow()
{
    delete m_window;
}

void ReplayWindow::Show()
{
    if (!m_window)
        m_window = new frmReplay(m_replay, &m_owner);
    m_window->show();
    m_window->raise();
}
