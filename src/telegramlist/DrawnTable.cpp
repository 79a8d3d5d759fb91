// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DrawnTable.h"

#include "DrawnTableAccessible.h"

#include <QEvent>

DrawnTable::DrawnTable(QWidget *parent) : QAbstractScrollArea(parent)
{
    QAccessible::installFactory(DrawnTableAccessible::Create);
    setFocusPolicy(Qt::StrongFocus);
}

void DrawnTable::changeEvent(QEvent *event)
{
    QAbstractScrollArea::changeEvent(event);
    const QEvent::Type type = event->type();
    if (type == QEvent::FontChange || type == QEvent::PaletteChange || type == QEvent::StyleChange)
        MakeFace();
}

void DrawnTable::showEvent(QShowEvent *event)
{
    MakeFace(); // the screen's scale is known now
    QAbstractScrollArea::showEvent(event);
}
