// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QFrame>

/// Covers the send list in the mode that never transmits; says why and leads to the options.
class SendListCover final : public QFrame
{
    Q_OBJECT

  public:
    explicit SendListCover(QWidget *parent);

  Q_SIGNALS:
    void OptionsClicked();
};
