// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortDevices.h"

#include "SettingsStore.h"

namespace
{

QString Section()
{
    return QStringLiteral("Ports");
}

QString Key(int comNumber)
{
    return QStringLiteral("COM%1").arg(comNumber);
}

} // namespace

void PortDevices::Assign(int comNumber, const QString &device)
{
    m_thisRun.remove(comNumber);
    const bool hasEntry = m_store.Read(Section(), Key(comNumber)).has_value();
    if (hasEntry || !device.isEmpty())
        m_store.Write(Section(), Key(comNumber), device);
}

Result PortDevices::Save()
{
    return m_store.Flush();
}

PortDevices::Meaning PortDevices::MeaningOf(int comNumber) const
{
    if (const QString assigned = m_thisRun.value(comNumber); !assigned.isEmpty())
        return {assigned, Source::ThisRun};
    return MeaningOfEntry(comNumber, m_store.Read(Section(), Key(comNumber)).value_or(QString()));
}

PortDevices::Meaning PortDevices::MeaningOfEntry(int comNumber, const QString &entry) const
{
    if (const QString own = entry.trimmed(); !own.isEmpty())
        return {own, Source::OwnAssignment};
    const QString name = m_systemName(comNumber);
    return {name, name.isEmpty() ? Source::None : Source::SystemName};
}
