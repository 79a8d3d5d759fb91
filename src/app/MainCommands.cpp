// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MainCommands.h"

namespace
{

using namespace MainCommands;

constexpr ToolbarButton Separator = {nullptr, nullptr, nullptr, Command::None, nullptr};

constexpr std::array<ToolbarButton, 20> ToolbarButtons = {{
    {"New", "New Project", "new", Command::New, nullptr},
    {"Open", "Open Project", "open", Command::Open, nullptr},
    {"Save", "Save Project", "save", Command::Save, nullptr},
    Separator,
    {"Properties", "Options", "properties", Command::Options, nullptr},
    Separator,
    {"Cut", "Cut", "cut", Command::Cut, nullptr},
    {"Copy", "Copy", "copy", Command::Copy, nullptr},
    {"Paste", "Paste", "paste", Command::Paste, nullptr},
    {"Find", "Find a Sequence Within The Communication Window", "find", Command::Find, "Ctrl+F"},
    Separator,
    {"Start", "Start Communication", "start", Command::Start, "F5"},
    {"Stop", "Stop Communication", "stop", Command::Stop, "Shift+F5"},
    Separator,
    {"Clean", "Clear Communication Window", "clean", Command::Clean, nullptr},
    Separator,
    {"Print", "Print Communication...", "print", Command::PrintCommunication, nullptr},
    Separator,
    {"Start Log-In", "Start Communication Logging", "logging", Command::StartLog, nullptr},
    {"Stop Log-In", "Stop Communication Logging", "nologging", Command::StopLog, nullptr},
}};

constexpr MenuEntry Bar(const char *name)
{
    return {name, nullptr, Command::None, false, nullptr, false};
}

constexpr MenuEntry Menu(const char *name, const char *caption)
{
    return {name, caption, Command::None, true, nullptr, false};
}

constexpr MenuEntry Entry(const char *name, const char *caption, Command command,
                          const char *shortcut = nullptr)
{
    return {name, caption, command, false, shortcut, false};
}

constexpr MenuEntry Tick(const char *name, const char *caption, Command command)
{
    return {name, caption, command, false, nullptr, true};
}

constexpr std::array MenuEntries = {
    Menu("mnuFile", "&File"),
    Entry("mnuFileNew", "&New Project", Command::New, "Ctrl+N"),
    Entry("mnuFileOpen", "&Open Project...", Command::Open, "Ctrl+O"),
    Bar("mnuFileBar0"),
    Entry("mnuFileSave", "&Save Project", Command::Save, "Ctrl+S"),
    Entry("mnuFileSaveAs", "Save Project &As...", Command::SaveAs),
    Bar("mnuFileBar3"),
    Entry("mnuPrintProject", "Print Project...", Command::PrintProject),
    Entry("mnuPrintCommunication", "Print Communication...", Command::PrintCommunication, "Ctrl+P"),
    Bar("mnuFileBar2"),
    Entry("mnuRecentProject_0", "", Command::OpenRecent),
    Entry("mnuRecentProject_1", "", Command::OpenRecent),
    Entry("mnuRecentProject_2", "", Command::OpenRecent),
    Entry("mnuRecentProject_3", "", Command::OpenRecent),
    Bar("mnuFileBar1"),
    Entry("mnuFileClose", "E&xit", Command::Exit, "Ctrl+Q"),
    Menu("mnuTools", "&Tools"),
    Entry("mnuToolsOptions", "&Options...", Command::Options),
    Bar("mnuToolsBar0"),
    Entry("mnuToolsLineStatus", "&Line Status...", Command::LineStatus),
    Entry("mnuToolsTraffic", "&Traffic...", Command::Traffic, "F6"),
    Bar("mnuToolsBar1"),
    Entry("mnuToolsSaveCapture", "Save &Capture...", Command::SaveCapture),
    Tick("mnuToolsRecordCapture", "&Record Capture...", Command::RecordCapture),
    Entry("mnuToolsReplayCapture", "Re&play Capture...", Command::ReplayCapture),
    Entry("mnuToolsJudgeCapture", "&Judge Capture...", Command::JudgeCapture),
    Entry("mnuToolsSessionRecord", "Session Recor&d...", Command::SessionRecord),
    Entry("mnuToolsStopRepeating", "Stop Repeatin&g", Command::StopRepeating, "F8"),
    Menu("mnuHelp", "&Help"),
    Entry("mnuHelpContents", "&Contents", Command::HelpContents),
    Entry("mnuHelpSearchForHelpOn", "&Search For Help On...", Command::HelpSearch),
    Bar("mnuHelpBar0"),
    Bar("mnuHelpBar1"),
    Entry("mnuHelpAbout", "&About...", Command::About),
};

constexpr std::array KeyCommands = {
    KeyCommand{"keyFindNext", "Find Next", Command::FindNext, "F3"},
};

// The letters of Cut, Copy, Paste, Delete and Select All are taken.
constexpr std::array ViewEntries = {
    ViewEntry{"mnuViewStart", "&Start", Command::Start, false},
    ViewEntry{"mnuViewStop", "St&op", Command::Stop, false},
    ViewEntry{"mnuViewFind", "&Find...", Command::Find, false},
    ViewEntry{"mnuViewClean", "C&lear", Command::Clean, false},
    ViewEntry{"mnuViewLineStatus", "Li&ne Status...", Command::LineStatus, false},
    ViewEntry{"mnuViewTraffic", "Traffic...", Command::Traffic, false},
    ViewEntry{"mnuViewBar1", nullptr, {}, false},
    ViewEntry{"mnuViewSaveCapture", "Sa&ve Capture...", Command::SaveCapture, false},
    ViewEntry{"mnuViewRecordCapture", "R&ecord Capture...", Command::RecordCapture, true},
    ViewEntry{"mnuViewReplayCapture", "Repla&y Capture...", Command::ReplayCapture, false},
    ViewEntry{"mnuViewJudgeCapture", "&Judge Capture...", Command::JudgeCapture, false},
    ViewEntry{"mnuViewSessionRecord", "Sess&ion Record...", Command::SessionRecord, false},
    ViewEntry{"mnuViewStopRepeating", "Stop Repeatin&g", Command::StopRepeating, false},
    ViewEntry{"mnuViewBar0", nullptr, {}, false},
    ViewEntry{"mnuViewControls", "Cont&rol Characters", Command::ControlCharacters, true},
};

} // namespace

namespace MainCommands
{

std::span<const ToolbarButton> Toolbar()
{
    return ToolbarButtons;
}

std::span<const MenuEntry> Menus()
{
    return MenuEntries;
}

std::span<const KeyCommand> Keys()
{
    return KeyCommands;
}

std::span<const ViewEntry> ViewMenu()
{
    return ViewEntries;
}

} // namespace MainCommands
