// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ControlAccessible.h"

#include <QAccessible>
#include <QWidget>

/// One of several pages in the same place, of which one is seen. Assistive programs find nothing in
/// the others, be they hidden or moved out of their parent's sight.
class DialogPage final : public QWidget
{
  public:
    explicit DialogPage(QWidget *parent = nullptr) : QWidget(parent)
    {
        QAccessible::installFactory(ControlAccessible::Create);
    }
};
