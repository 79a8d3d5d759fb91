// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemInformation.h"

#include "Shell.h"
#include "SystemRegistry.h"
#include "UserPrompts.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace
{

const QString Root = QStringLiteral("HKEY_LOCAL_MACHINE");

/// Bytes, the lowest first, as "&h" and hexadecimal digits.
QString HexLiteral(const QByteArray &bytes)
{
    QString text = QStringLiteral("&h");
    for (auto byte = bytes.crbegin(); byte != bytes.crend(); ++byte)
        text += QString::number(uint(uchar(*byte)), 16);
    return text;
}

QString FormatAsNumber(const QString &hexLiteral)
{
    return QString::number(hexLiteral.sliced(2).toULongLong(nullptr, 16));
}

bool Starts(Shell &shell, const ProgramCall &call)
{
    return !shell.Start(call).Failed();
}

bool TryToStart(SystemRegistry &registry, Shell &shell)
{
    const KeyValue program =
        GetKeyValue(registry, Root, QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools\\MSINFO"),
                    QStringLiteral("PATH"));
    if (program.found)
        return Starts(shell, {program.value, {}});

    const KeyValue folder =
        GetKeyValue(registry, Root, QStringLiteral("SOFTWARE\\Microsoft\\Shared Tools Location"),
                    QStringLiteral("MSINFO"));
    if (folder.found) {
        const QString file = folder.value + QDir::separator() + QLatin1String("MSINFO32.EXE");
        return QFileInfo(file).isFile() && Starts(shell, {file, {}});
    }

    const QList<ProgramCall> own = shell.SystemInformationPrograms();
    return std::any_of(own.begin(), own.end(),
                       [&](const ProgramCall &call) { return Starts(shell, call); });
}

} // namespace

KeyValue GetKeyValue(SystemRegistry &registry, const QString &rootKey, const QString &keyName,
                     const QString &valueName)
{
    const auto stored = registry.Read(rootKey, keyName, valueName);
    if (!stored)
        return {};
    const qsizetype nul = stored->bytes.indexOf('\0');
    const QByteArray bytes = nul < 0 ? stored->bytes : stored->bytes.first(nul);
    switch (stored->type) {
    case RegistryValue::Type::Text:
        return {true, QString::fromUtf8(bytes)};
    case RegistryValue::Type::Number:
        return {true, FormatAsNumber(HexLiteral(bytes))};
    case RegistryValue::Type::Other:
        break;
    }
    return {true, QString()};
}

void StartSysInfo(SystemRegistry &registry, Shell &shell, UserPrompts &prompts)
{
    if (!TryToStart(registry, shell)) {
        prompts.ShowMessage(
            {.text = QStringLiteral("System Information Is Unavailable At This Time")});
    }
}
