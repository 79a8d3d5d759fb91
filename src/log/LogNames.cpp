// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LogNames.h"

#include "PathParts.h"

#include <algorithm>

namespace
{

constexpr qsizetype SuffixLength = 4;

} // namespace

const LogForm &FormOf(Representation representation)
{
    return *std::find_if(LogForms.begin(), LogForms.end(), [&](const LogForm &form) {
        return form.representation == representation;
    });
}

LogNames LogNames::Of(const QString &path)
{
    QString base = PathParts::WithoutExtension(PathParts::FileName(path));
    const bool hasSuffix = base.size() > SuffixLength &&
                           std::any_of(LogForms.begin(), LogForms.end(), [&](const LogForm &form) {
                               return base.endsWith(QLatin1String(form.suffix));
                           });
    if (hasSuffix)
        base.chop(SuffixLength);
    return {PathParts::Folder(path), base};
}

QString LogNames::PathOf(const LogForm &form) const
{
    return folder + base + QLatin1String(form.suffix) + QLatin1String(".txt");
}
