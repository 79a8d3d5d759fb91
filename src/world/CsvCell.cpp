// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CsvCell.h"

#include "PlainText.h"

QByteArray CsvCell(QStringView text)
{
    QByteArray cell = PlainText(text).toUtf8();
    if (!cell.isEmpty() && QByteArrayView("=+-@").contains(cell[0]))
        cell.prepend('\'');
    if (cell.contains(',') || cell.contains('"'))
        cell = '"' + cell.replace('"', "\"\"") + '"';
    return cell;
}
