// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "MdReplay.h"

#include <QPointer>

class QWidget;
class frmReplay;

/// The replay of captures and its window, which comes with the first one and stands over the main
/// window.
class ReplayWindow final
{
  public:
    ReplayWindow(const ReplayParts &parts, QWidget &owner);
    ~ReplayWindow();
    Q_DISABLE_COPY_MOVE(ReplayWindow)

    MdReplay &Replay() { return m_replay; }

  private:
    void Show();

    MdReplay m_replay;
    QWidget &m_owner;
    QPointer<frmReplay> m_window; ///< goes with its owner
};
