// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayList>

#include <algorithm>
#include <memory>

#include <dirent.h>

/// What stands in a folder, byte for byte and sorted: the toolkit passes over names that are not
/// UTF-8.
inline QByteArrayList NamesIn(const QString &folder)
{
    QByteArrayList names;
    const std::unique_ptr<DIR, int (*)(DIR *)> open(::opendir(qPrintable(folder)), ::closedir);
    while (const dirent *entry = open ? ::readdir(open.get()) : nullptr) {
        const QByteArray name = entry->d_name;
        if (name != "." && name != "..")
            names << name;
    }
    std::sort(names.begin(), names.end());
    return names;
}
