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
    LineStatus,
    Traffic,
    SaveCapture,
    RecordCapture, ///< or end what is recorded
    ReplayCapture,
    JudgeCapture,
    SessionRecord,
    StopRepeating,
    Find,
    FindNext,
    Start,
    Stop,
    Clean,
    ControlCharacters, ///< turns over whether the views show them
    StartLog,
    StopLog,
    Cut,
    Copy,
    Paste,
    HelpContents,
    HelpSearch,
    About
};

/// The tables of the toolbar, of the menus and of the keys.
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
    bool ticks;           ///< shows a tick, by MainActions::SetTicked
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

/// One line of what the context menu of a view has below the view's own entries; a row without a
/// caption is a separator. The key of a command is shown beside it.
struct ViewEntry {
    const char *name;
    const char *caption;
    Command command;
    bool ticks; ///< shows a tick, by MainActions::SetTicked; choosing it turns the tick over
};

std::span<const ViewEntry> ViewMenu();

} // namespace MainCommands
