// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "IdleLook.h"

#include <QPalette>
#include <QWidget>

namespace
{

QPalette IdlePalette(QPalette palette)
{
    for (int i = 0; i < QPalette::NColorRoles; ++i) {
        const auto role = QPalette::ColorRole(i);
        for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
            palette.setBrush(group, role, palette.brush(QPalette::Disabled, role));
    }
    return palette;
}

} // namespace

void LookIdle(QWidget &control, const QString &why)
{
    control.setToolTip(why);
    control.setAccessibleDescription(why);
    control.setPalette(QPalette());
    if (!why.isEmpty())
        control.setPalette(IdlePalette(control.palette()));
}
