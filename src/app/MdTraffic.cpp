// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdTraffic.h"

#include "MdRecord.h"
#include "RecordSource.h"
#include "frmTraffic.h"

MdTraffic::MdTraffic(const MdTrafficParts &parts) : m_parts(parts) {}

MdTraffic::~MdTraffic() = default;

void MdTraffic::Show()
{
    if (!m_window) {
        m_book.Show(std::make_shared<RecordSource>(m_parts.record.Segments()));
        m_window = std::make_unique<frmTraffic>(
            TrafficWindowParts{m_book, m_parts.display, m_parts.settings});
    }
    if (m_window->isMinimized())
        m_window->showNormal();
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void MdTraffic::StorePlace()
{
    if (m_window)
        m_window->StorePlace();
}
