// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QMap>

/// Settings as a text in the form of QSettings::IniFormat.
namespace IniText
{

/// By "Section/Key"; without a section, "Key".
using Texts = QMap<QString, QString>;

struct Content {
    Texts texts;
    Result result;
};

/// What the toolkit reads from the bytes, each value as a text. Values that are none, such as a
/// list from an unquoted comma, are the text that stands in their line.
Content Read(const QByteArray &bytes);

/// The bytes that the toolkit would write, and from which it reads every text as it was.
QByteArray Write(const Texts &texts);

} // namespace IniText
