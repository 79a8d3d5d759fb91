// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"

#include <QTabBar>

/// The tabs below the views, one for each representation. A key chooses a view just as a click on
/// its tab does.
class ViewTabs final : public QTabBar
{
    Q_OBJECT

  public:
    explicit ViewTabs(QWidget *parent);

    /// Makes the tabs; the captions begin with a blank, so that they stand off the edge.
    void AddTabs();
    /// The keys that choose a view from anywhere in the window.
    void AddKeys(QWidget &window);

  Q_SIGNALS:
    /// By mouse or key; also the one that is shown already.
    void Chosen(Representation view);

  private:
    void Choose(int tab);
    void Tell(int tab);
};
