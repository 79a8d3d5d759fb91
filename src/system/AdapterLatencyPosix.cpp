// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "AdapterLatency.h"

#include <QFile>
#include <QFileInfo>

namespace
{

QString NameOf(const QString &device)
{
    const QFileInfo file(device);
    return QFileInfo(file.exists() ? file.canonicalFilePath() : device).fileName();
}

} // namespace

bool IsAdapter(const QString &device)
{
    const QString name = NameOf(device);
    return name.startsWith(QLatin1String("ttyUSB")) || name.startsWith(QLatin1String("ttyACM"));
}

std::optional<int> AdapterLatency(const QString &device, const QString &descriptions)
{
    QFile told(descriptions + u'/' + NameOf(device) + QStringLiteral("/device/latency_timer"));
    if (!told.open(QIODevice::ReadOnly))
        return std::nullopt;
    bool isNumber = false;
    const int latency = told.read(16).trimmed().toInt(&isNumber);
    return isNumber && latency > 0 ? std::optional(latency) : std::nullopt;
}
