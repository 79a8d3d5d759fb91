// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <span>

/// What the user can ask of the main window, by toolbar, menu or a click elsewhere.
enum class Command {
    None,
    New,
    Open,
    Save,
    SaveAs,
    PrintProject,
    PrintCommunication,
    OpenRecent,
    Exit,
    Options,
    Find,
    FindNext,
    Start,
    Stop,
    Clean,
    StartLog,
    StopLog,
    Cut,
    Copy,
    Paste,
    HelpContents,
    HelpSearch,
    About
};

/// The tables of the toolbar and of the menus.
namespace MainCommands
{

/// One place of the toolbar; a separator has no key.
struct ToolbarButton {
    const char *key;
    const char *toolTip;
    const char *image;
    Command command;
    const char *shortcut; ///< for what no menu entry offers; null for none
};

std::span<const ToolbarButton> Toolbar();

/// One line of the menu bar's menus, in order; a row that opens a menu has no command and
/// starts it, a row without a caption is a separator.
struct MenuEntry {
    const char *name;
    const char *caption;
    Command command;
    bool opensMenu;
    const char *shortcut; ///< null for none
};

std::span<const MenuEntry> Menus();

/// A command that has a key and nothing to click.
struct KeyCommand {
    const char *name;
    const char *caption;
    Command command;
    const char *shortcut;
};

std::span<const KeyCommand> Keys();

} // namespace MainCommands
