// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficResponses.h"

#include "ClOutputFile.h"
#include "ResponseExport.h"
#include "ResponseText.h"
#include "TelegramBook.h"
#include "TrafficActions.h"
#include "TrafficExporting.h"
#include "TrafficFinding.h"
#include "WorkProgress.h"
#include "frmResponses.h"
#include "frmTraffic.h"

namespace
{

TrafficExporting::Request RequestOf(const QString &title, const QString &name)
{
    return {.title = title,
            .what = QStringLiteral("The response times"),
            .filter = QStringLiteral("CSV | *.csv"),
            .name = name,
            .endings = {QStringLiteral(".csv")}};
}

Result WriteText(OpenFiles &files, const QString &path, const QByteArray &text)
{
    ClOutputFile file(files);
    if (Result opened = file.OpenForReplacing(path); opened.Failed())
        return opened;
    file.WriteInFile(text);
    return file.State().Failed() ? file.State() : file.Commit();
}

} // namespace

TrafficResponses::TrafficResponses(frmTraffic &window, TrafficActions &actions,
                                   TrafficFinding &finding, TrafficExporting &exporting,
                                   ResponseWindowSettings &settings)
    : m_window(window), m_finding(finding), m_exporting(exporting), m_settings(settings)
{
    actions.On(TrafficCommand::ResponseTimes, [this] { Show(); });
    connect(&window.Book(), &TelegramBook::Reset, this, &TrafficResponses::Follow);
    connect(&window, &frmTraffic::OriginChanged, this, &TrafficResponses::Follow);
}

TrafficResponses::~TrafficResponses() = default;

void TrafficResponses::Show()
{
    if (!m_responses) {
        m_responses = std::make_unique<frmResponses>(m_settings, &m_window);
        connect(m_responses.get(), &frmResponses::RowWanted, this, &TrafficResponses::GoTo);
        connect(m_responses.get(), &frmResponses::TableWanted, this, &TrafficResponses::SaveTable);
        connect(m_responses.get(), &frmResponses::TimesWanted, this, &TrafficResponses::SaveTimes);
        Follow();
    }
    if (m_responses->isMinimized())
        m_responses->showNormal();
    m_responses->show();
    m_responses->raise();
    m_responses->activateWindow();
}

/// Another filter is nothing to start anew for.
void TrafficResponses::Follow()
{
    if (!m_responses)
        return;
    m_responses->ShowOrigin(m_window.Origin().what);
    const TelegramBook &book = m_window.Book();
    if (m_source == book.Source() && m_rule == book.Rule())
        return;
    m_source = book.Source();
    m_rule = book.Rule();
    m_responses->Count(m_source, m_rule);
}

void TrafficResponses::GoTo(qint64 number)
{
    if (!m_window.isVisible())
        m_window.show();
    m_finding.GoToNumber(number);
}

void TrafficResponses::SaveTable()
{
    const QByteArray text = ResponseText::Csv(m_responses->Book().Told().rows);
    m_exporting.Export(RequestOf(QStringLiteral("Save Table"), QStringLiteral("responses.csv")),
                       [text](OpenFiles &files, const QString &path, WorkProgress &progress) {
                           return progress.Settle() ? WriteText(files, path, text) : Result();
                       });
}

void TrafficResponses::SaveTimes()
{
    const ResponseExport all = {m_responses->Book().Question()};
    m_exporting.Export(
        RequestOf(QStringLiteral("Save All Times"), QStringLiteral("response times.csv")),
        [all](OpenFiles &files, const QString &path, WorkProgress &progress) {
            return all.WriteTo(files, path, progress);
        });
}

void TrafficResponses::StorePlace()
{
    if (m_responses && m_responses->isVisible())
        m_responses->StorePlace();
}
