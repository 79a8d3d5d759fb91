// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LogNames.h"

#include "PathParts.h"

LogNames LogNames::Of(const QString &path)
{
    QString base = PathParts::WithoutExtension(PathParts::FileName(path));
    for (const RepresentationRow &row : RepresentationRows) {
        const QLatin1String suffix(row.logSuffix);
        if (base.size() > suffix.size() && base.endsWith(suffix)) {
            base.chop(suffix.size());
            break;
        }
    }
    return {PathParts::Folder(path), base};
}

QString LogNames::PathOf(Representation representation) const
{
    return folder + base + QLatin1String(RowOf(representation).logSuffix) + QLatin1String(".txt");
}
