// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortLine.h"

SerialLine &PortLine::ChooseLocal()
{
    m_chosen = &m_local;
    return m_local;
}

RemoteLine &PortLine::ChooseRemote()
{
    m_chosen = &m_remote;
    return m_remote;
}

void PortLine::Listen(LineListener *listener)
{
    m_local.Listen(listener);
    m_remote.Listen(listener);
}
