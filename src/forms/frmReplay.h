// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "MdReplay.h"

#include <QDialog>
#include <QTimer>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;

/// The window "Replay": how a replay stands, looked at several times a second while it is seen, and
/// the hands on it. Not modal. To close it stops the replay.
class frmReplay final : public QDialog
{
    Q_OBJECT

  public:
    /// The replay lives longer than the window.
    explicit frmReplay(MdReplay &replay, QWidget *parent = nullptr);

    /// Between two looks.
    static constexpr int RefreshMilliseconds = 200;

  public Q_SLOTS:
    void reject() override;

  protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

  private:
    void MakeLabels();
    void MakeButtons();
    void LayOut();
    void Refresh();
    void ShowState(const CaptureReplay::Position &position);
    void PauseOrGoOn();

    MdReplay &m_replay;
    QTimer m_timer;
    QLabel *lblState;
    QLabel *lblTime;
    QLabel *lblPlayed;
    QProgressBar *prgPlace;
    QComboBox *cboSpeed;
    QPushButton *cmdPause;
    QPushButton *cmdNext;
    QPushButton *cmdStop;
    QPushButton *cmdClose;
};
