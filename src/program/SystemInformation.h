// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class Shell;
class SystemRegistry;
class UserPrompts;

/// What the registry answered. A value of a type that has no text is found and empty.
struct KeyValue {
    bool found = false;
    QString value;

    bool operator==(const KeyValue &) const = default;
};

/// Reads one value as text. What is stored counts up to its first NUL, whatever its type. Of a
/// 32-bit number the bytes left are written from the last to the first, each in hexadecimal without
/// leading zeros, and the digits are read as one number again: 01020304 gives 4660 (hexadecimal
/// 1234). That number is never negative, and 0 if no byte is left.
KeyValue GetKeyValue(SystemRegistry &registry, const QString &rootKey, const QString &keyName,
                     const QString &valueName);

/// Starts the program that shows what the system is made of: the one that the registry names, and
/// on a desktop whose registry names none the first of its own that starts. Without one it tells
/// the user so.
void StartSysInfo(SystemRegistry &registry, Shell &shell, UserPrompts &prompts);
