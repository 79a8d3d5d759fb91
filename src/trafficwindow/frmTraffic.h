// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DisplaySettings.h"

#include <QWidget>

#include <array>

class QLabel;
class QMenu;
class QMenuBar;
class QSplitter;
class QToolButton;
class QVBoxLayout;
class TelegramBook;
class TelegramDetails;
class TelegramList;
struct TrafficWindowSettings;

/// What the window works with; all of it lives longer than the window.
struct TrafficWindowParts {
    TelegramBook &book;
    const DisplaySettings &display;
    TrafficWindowSettings &settings;
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

    enum class Menu { Capture, Edit, View };
    /// Actions that are added here belong to the window, with their keys.
    QMenu &MenuOf(Menu menu) const { return *m_menus[size_t(menu)]; }
    /// Stands above the list, below those that were added before.
    void AddBar(QWidget &bar);
    /// Stands at the foot of the window.
    void SetFoot(QWidget &foot);

    /// Puts the window's place and its columns into the settings.
    void StorePlace();

  protected:
    void closeEvent(QCloseEvent *event) override;

  private:
    void MakeMenus();
    void MakeStatus();
    void RestorePlace();
    void ShowDetails(qint64 row);

    TrafficWindowParts m_parts;
    QMenuBar *m_menuBar;
    std::array<QMenu *, 3> m_menus{};
    QVBoxLayout *m_bars;
    QVBoxLayout *m_foot;
    QSplitter *m_splitter;
    TelegramList *lstTelegrams;
    TelegramDetails *m_details;
    QLabel *lblShown;
    QLabel *lblChosen;
    QLabel *lblTimes;
    QToolButton *cmdFollow;
};
