// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "HelpLoading.h"

#include "HelpFile.h"

#include <QCoreApplication>
#include <QLibrary>

/// It is never unloaded: the toolkit's reader has threads of its own.
LoadedHelp LoadHelpFile()
{
    QLibrary module(QCoreApplication::applicationDirPath() +
                    QLatin1String("/modules/serimonde-help.so"));
    module.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    const auto maker = reinterpret_cast<HelpFileMaker *>(module.resolve(HelpFileMakerName));
    if (!maker)
        return {nullptr, Failure{module.errorString() + u'.'}};
    return {std::unique_ptr<HelpFile>(maker()), {}};
}
