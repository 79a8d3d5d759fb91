// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PlainToolTip.h"

#include "PlainText.h"

#include <QTextDocument>

QString PlainToolTip(QStringView text)
{
    QString plain = PlainText(text);
    return Qt::mightBeRichText(plain) ? Qt::convertFromPlainText(plain) : plain;
}
