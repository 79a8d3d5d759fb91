// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QPushButton>

/// A button with its name in the form and its caption.
inline QPushButton *NamedButton(const char *name, const char *caption, QWidget *parent = nullptr)
{
    auto *button = new QPushButton(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

/// Lets the button become hardly wider than its caption where a row of buttons has little room.
inline QPushButton *LetNarrow(QPushButton *button)
{
    button->setMinimumWidth(button->fontMetrics().horizontalAdvance(button->text()) + 8);
    return button;
}
