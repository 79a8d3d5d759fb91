// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>
#include <QString>

/// What the project file will not keep of a text, in a sentence for the user; empty if it keeps
/// all of it. The file has no way to write such characters so that they can be read again.
namespace FileCut
{

QString OfName(QByteArrayView name);
QString OfComment(QByteArrayView comment);

} // namespace FileCut
