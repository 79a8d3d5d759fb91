// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramRule.h"

#include <QObject>

#include <memory>

class TelegramSource;
class TrafficActions;
class TrafficExporting;
class TrafficFinding;
class frmResponses;
class frmTraffic;
struct ResponseWindowSettings;

/// The window "Response Times" beside the traffic window: it counts what is shown there, with or
/// without a filter, and leads to its rows. It is made when it is first asked for.
class TrafficResponses final : public QObject
{
    Q_OBJECT

  public:
    /// All of it lives longer.
    TrafficResponses(frmTraffic &window, TrafficActions &actions, TrafficFinding &finding,
                     TrafficExporting &exporting, ResponseWindowSettings &settings);
    /// The window goes with it.
    ~TrafficResponses() override;

    /// Puts the window's place into the settings.
    void StorePlace();

  private:
    void Show();
    void Follow();
    void GoTo(qint64 number);
    void SaveTable();
    void SaveTimes();

    frmTraffic &m_window;
    TrafficFinding &m_finding;
    TrafficExporting &m_exporting;
    ResponseWindowSettings &m_settings;
    std::unique_ptr<frmResponses> m_responses; ///< null before it was shown
    // What is counted.
    std::shared_ptr<const TelegramSource> m_source;
    TelegramRule m_rule;
};
