// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "comm/PortDevices.h"

#include "platform/SettingsStore.h"
#include "platform/SystemPortName.h"

QString PortDevices::DeviceOf(int comNumber) const
{
    if (QString assigned = m_thisRun.value(comNumber); !assigned.isEmpty())
        return assigned;
    QString own = m_store.Read(QStringLiteral("Ports"), QStringLiteral("COM%1").arg(comNumber))
                      .value_or(QString())
                      .trimmed();
    return own.isEmpty() ? SystemPortName(comNumber) : own;
}
