// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ReplayWindow.h"

#include "frmReplay.h"

#include <QStyle>
#include <QWidget>

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
    if (!m_window) {
        m_window = new frmReplay(m_replay, &m_owner);
        // Beside the views; the title of the one and the status bar of the other are as high as
        // that.
        const int frames = 3 * m_owner.style()->pixelMetric(QStyle::PM_TitleBarHeight);
        const int above = m_owner.height() - m_window->sizeHint().height() - frames;
        m_window->move(m_owner.mapToGlobal(QPoint(0, above)));
    }
    m_window->show();
    m_window->raise();
}
