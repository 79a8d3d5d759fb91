// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TrafficCaptures.h"
#include "TrafficCopying.h"
#include "TrafficExporting.h"

#include <QStringList>

#include <functional>

class TrafficActions;
class TrafficBookmarking;
class TrafficFiltering;
class TrafficFinding;
class TrafficResponses;
struct ResponseWindowSettings;

/// What the work on telegrams needs of the program; all of it lives longer.
struct TrafficWorkParts {
    std::function<QStringList()> SequenceNames; ///< of the project, as Unicode
    TrafficExportParts exporting;
    TrafficCopyParts copying;
    TrafficCaptureParts captures;
    ResponseWindowSettings &responses;
};

/// All that can be done with the telegrams of the traffic window: what stands in its menus and in
/// the bars above its list.
class TrafficWork final : public QObject
{
    Q_OBJECT

  public:
    /// It goes before the window.
    TrafficWork(frmTraffic &window, const TrafficWorkParts &parts);
    ~TrafficWork() override;

    /// Whether nothing is lost that the user wants saved.
    bool AskSaveBookmarks();

    /// The end of the program has not waited for a disk.
    bool Hangs() const;
    /// Puts the place of a window beside it into the settings.
    void StorePlace();

  private:
    TrafficExporting m_exporting;
    std::unique_ptr<TrafficActions> m_actions;
    std::unique_ptr<TrafficFinding> m_finding;
    std::unique_ptr<TrafficFiltering> m_filtering;
    std::unique_ptr<TrafficBookmarking> m_bookmarking;
    std::unique_ptr<TrafficCopying> m_copying;
    std::unique_ptr<TrafficCaptures> m_captures;
    std::unique_ptr<TrafficResponses> m_responses;
};
