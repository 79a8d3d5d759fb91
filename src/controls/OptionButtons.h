// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QRadioButton>

#include <array>

/// The Tab key leads to the chosen one of a group of option buttons; the arrow keys to the others.
template <size_t Count> void LeadTabToChosen(const std::array<QRadioButton *, Count> &options)
{
    for (QRadioButton *option : options)
        option->setFocusPolicy(option->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
}
