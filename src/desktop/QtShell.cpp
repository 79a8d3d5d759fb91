// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtShell.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

#include <array>

namespace
{

struct InformationProgram {
    const char *name;
    const char *argument; ///< null for none
    const char *desktop;  ///< the only one that it runs on; null for all
};

constexpr std::array<InformationProgram, 9> InformationPrograms = {{
    {"kinfocenter", nullptr, "KDE"},
    {"gnome-control-center", "info-overview", "GNOME"},
    {"cinnamon-settings", "info", "X-Cinnamon"},
    {"mate-system-monitor", "--show-system-tab", "MATE"},
    {"hardinfo2", nullptr, nullptr},
    {"hardinfo", nullptr, nullptr},
    {"kinfocenter", nullptr, nullptr},
    {"mate-system-monitor", "--show-system-tab", nullptr},
    {"lshw-gtk", nullptr, nullptr},
}};

} // namespace

Result QtShell::Open(const QString &link)
{
    if (QDesktopServices::openUrl(QUrl(link)))
        return {};
    return Failure{QStringLiteral("The desktop has no program for such links.")};
}

Result QtShell::Start(const ProgramCall &call)
{
    QProcess process;
    process.setProgram(call.program);
    process.setArguments(call.arguments);
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    if (process.startDetached())
        return {};
    return Failure{process.errorString()};
}

QList<ProgramCall> QtShell::SystemInformationPrograms() const
{
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    QList<ProgramCall> calls;
    for (const InformationProgram &each : InformationPrograms) {
        if (each.desktop && !desktops.contains(QLatin1String(each.desktop)))
            continue;
        const QString path = QStandardPaths::findExecutable(QString::fromLatin1(each.name));
        QStringList arguments;
        if (each.argument)
            arguments << QString::fromLatin1(each.argument);
        const ProgramCall call = {path, arguments};
        if (!path.isEmpty() && !calls.contains(call))
            calls << call;
    }
    return calls;
}
