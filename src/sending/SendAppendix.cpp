// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SendAppendix.h"

QByteArray SendAppendix::Of(QByteArrayView bytes) const
{
    if (!checksum)
        return FixedOnes[size_t(fixed)].bytes;
    QByteArray check = Checksum::Of(*checksum, bytes);
    if (!check.isEmpty() && Checksum::RowOf(checksum->kind).frame != ChecksumFrame::Bytes)
        check += "\r\n";
    return check;
}

QString SendAppendix::WhyNone(QByteArrayView bytes) const
{
    return checksum ? Checksum::WhyNone(*checksum, bytes) : QString();
}

QString SendAppendix::Stored() const
{
    return checksum ? Checksum::Stored(*checksum)
                    : QString::fromLatin1(FixedOnes[size_t(fixed)].name);
}

SendAppendix SendAppendix::Restored(const QString &stored)
{
    for (size_t i = 0; i < FixedOnes.size(); ++i) {
        if (stored == QLatin1String(FixedOnes[i].name))
            return {.fixed = int(i)};
    }
    ChecksumRule rule;
    if (Checksum::Restore(stored, rule))
        return {.fixed = 0, .checksum = rule};
    return {};
}
