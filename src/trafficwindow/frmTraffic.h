// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DisplaySettings.h"

#include <QWidget>

#include <array>
#include <optional>

class QMenu;
class QMenuBar;
class QSplitter;
class QVBoxLayout;
class TelegramBook;
class TelegramDetails;
class TelegramList;
class TrafficStatus;
struct TelegramRule;
struct TrafficWindowSettings;

/// What the window works with; all of it lives longer than the window.
struct TrafficWindowParts {
    TelegramBook &book;
    const DisplaySettings &display;
    TrafficWindowSettings &settings;
};

/// What there is to say of where the telegrams come from.
struct TrafficOrigin {
    QString what;        ///< such as "Record of this session"
    QString uncertainty; ///< of the times

    bool operator==(const TrafficOrigin &) const = default;
};

/// The window "Traffic": the telegrams in a list, the one in hand in full below it. It stands by
/// itself, beside the main window or without it. What else can be done with telegrams stands in
/// bars above the list, in a foot below it, and in the menus, and is added by those who do it.
class frmTraffic final : public QWidget
{
    Q_OBJECT

  public:
    explicit frmTraffic(const TrafficWindowParts &parts);
    ~frmTraffic() override;

    /// Its rows are those that are shown.
    TelegramBook &Book() const { return m_parts.book; }
    TelegramList &List() const { return *lstTelegrams; }

    enum class Menu { Capture, Edit, Search, Bookmarks, View };
    /// Actions that are added here belong to the window, with their keys.
    QMenu &MenuOf(Menu menu) const { return *m_menus[size_t(menu)]; }
    /// Another source is shown, or there is something else to say of the same.
    void ShowOrigin(const TrafficOrigin &origin);
    const TrafficOrigin &Origin() const { return m_origin; }

    /// Where telegrams end; cuts all anew.
    void SetRule(const TelegramRule &rule);

    /// Stands above the list, below those that were added before, or above them.
    void AddBar(QWidget &bar, bool first = false);
    /// Stands at the foot of the window, with an entry of a menu that leads there.
    void SetFoot(QWidget &foot);

    /// Puts the window's place and its columns into the settings.
    void StorePlace();

  Q_SIGNALS:
    /// There is something else to say of where the telegrams come from.
    void OriginChanged();
    void MainWindowWanted();

  protected:
    void closeEvent(QCloseEvent *event) override;

  private:
    void MakeMenus();
    void ConnectList();
    void RestorePlace();
    void ChooseRule();
    TelegramRule StoredRule() const;
    void StoreRule(const TelegramRule &rule);
    void RememberPlace();
    void SeekPlace();
    void ShowDetails(qint64 row);

    TrafficWindowParts m_parts;
    QMenuBar *m_menuBar;
    std::array<QMenu *, 5> m_menus{};
    QVBoxLayout *m_bars;
    QVBoxLayout *m_foot;
    QSplitter *m_splitter;
    TelegramList *lstTelegrams;
    TelegramDetails *m_details;
    TrafficStatus *m_status;
    TrafficOrigin m_origin;
    std::optional<qint64> m_looksAt; ///< time on the wall of the row that was seen
    bool m_seeks = false;            ///< the row of that time, after all was cut anew
};
