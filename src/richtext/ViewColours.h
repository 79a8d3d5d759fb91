// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DisplaySettings.h"

#include <QColor>

#include <array>

class QPalette;

/// The colours of the communication window as a screen shows them: those that are stored. As long
/// as all of these are the defaults, which are made for white, a dark palette gets light ones of
/// the same hues on its own ground.
class ViewColours final
{
  public:
    ViewColours() = default;
    ViewColours(const DisplaySettings &stored, const QPalette &palette);

    QColor Ground() const { return m_ground; }
    /// Of a text whose style has that colour.
    QColor TextOf(qint32 stored) const;

    /// White reads better on its base than black does.
    static bool IsDark(const QPalette &palette);
    /// From 1 to 21; from 4.5 on a text can be read.
    static qreal Contrast(const QColor &one, const QColor &other);

  private:
    bool m_translates = false;
    QColor m_ground = Qt::white;
    std::array<QColor, StyleIndex::Count> m_texts; ///< in place of the defaults
};
