// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <span>

class QWidget;

/// Which page of the help belongs to which form.
namespace HelpPages
{

struct Row {
    const char *form; ///< its object name or its class
    const char *page; ///< file name
};

std::span<const Row> Table();

/// The page of the nearest form in the table that the widget lies in or belongs to; null if there
/// is none.
const char *PageOf(const QWidget *widget);

} // namespace HelpPages
