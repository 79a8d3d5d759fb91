// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemPortName.h"

#ifdef Q_OS_WIN

QString SystemPortName(int comNumber)
{
    return QStringLiteral("COM%1").arg(comNumber);
}

#else

#include <array>

namespace
{

/// One kind of device: 32 COM numbers each, in this order from COM1 on.
constexpr std::array<const char *, 3> DeviceKinds = {"/dev/ttyS", "/dev/ttyUSB", "/dev/ttyACM"};
constexpr int NumbersOfAKind = 32;

} // namespace

QString SystemPortName(int comNumber)
{
    const int index = comNumber - 1;
    if (index < 0 || index >= int(DeviceKinds.size()) * NumbersOfAKind)
        return {};
    return QLatin1StringView(DeviceKinds[size_t(index / NumbersOfAKind)]) +
           QString::number(index % NumbersOfAKind);
}

#endif
