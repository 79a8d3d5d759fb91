// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QStatusBar>

#include <array>

class ClickLabel;
struct CommConfiguration;

/// The status bar of the main window: what communication does, and the settings in force.
class StatusPanels final : public QStatusBar
{
    Q_OBJECT

  public:
    explicit StatusPanels(QWidget *parent);

    /// Panel 1.
    void ShowPortStatus(const QString &text);
    /// Panels 2 to 6.
    void ShowSettings(const CommConfiguration &comm);

  Q_SIGNALS:
    /// A panel that shows settings was clicked.
    void SettingsClicked();

  protected:
    bool eventFilter(QObject *window, QEvent *event) override;

  private:
    void ShowHands(bool clicksAct);

    std::array<ClickLabel *, 6> m_panels{};
};
