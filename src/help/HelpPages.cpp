// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "HelpPages.h"

#include <QWidget>

#include <algorithm>
#include <array>

namespace HelpPages
{

namespace
{

constexpr auto Rows = std::to_array<Row>({
    {"frmMain", "window.html"},
    {"frmEditAction", "sequences.html"},
    {"frmEditEvent", "receive-sequences.html"},
    {"frmFind", "search.html"},
    {"frmOptions", "options.html"},
    {"frmDevices", "ports.html"},
    {"frmLineStatus", "line-status.html"},
    {"frmTraffic", "traffic.html"},
    {"frmTelegramRule", "traffic.html"},
    {"frmReplay", "replay.html"},
    {"frmJudgement", "judging.html"},
    {"dlgGoToTime", "traffic-work.html"},
    {"dlgGoToNumber", "traffic-work.html"},
    {"dlgBookmark", "traffic-work.html"},
    {"frmBookmarks", "traffic-work.html"},
    {"frmInsertChecksum", "sending.html"},
    {"frmRepeat", "sending.html"},
    {"SendLine", "sending.html"},
    {"frmSessionRecord", "session-record.html"},
    {"frmAbout", "about.html"},
    {"dlgDevice", "ports.html"},
    {"dlgProjectFile", "projects.html"},
    {"dlgLogFile", "logging.html"},
    {"dlgCaptureFile", "captures.html"},
    {"dlgReplayCapture", "replay.html"},
    {"dlgJudgeCapture", "judging.html"},
    {"dlgSaveReport", "judging.html"},
    {"dlgOpenCapture", "traffic-work.html"},
    {"dlgExportTraffic", "traffic-work.html"},
    {"dlgSaveCapture", "session-record.html"},
    {"QAbstractPrintDialog", "printing.html"},
    {"QMessageBox", "messages.html"},
    {"WorkBox", "printing.html"},
});

} // namespace

std::span<const Row> Table()
{
    return Rows;
}

const char *PageOf(const QWidget *widget)
{
    for (; widget; widget = widget->parentWidget()) {
        const auto row = std::find_if(Rows.begin(), Rows.end(), [widget](const Row &each) {
            return widget->objectName() == QLatin1String(each.form) || widget->inherits(each.form);
        });
        if (row != Rows.end())
            return row->page;
    }
    return nullptr;
}

} // namespace HelpPages
