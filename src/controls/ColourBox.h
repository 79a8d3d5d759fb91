// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QPushButton>

/// A button that is nothing but a colour.
class ColourBox final : public QPushButton
{
    Q_OBJECT

  public:
    ColourBox(const char *name, const char *accessibleName);

    /// 0x00BBGGRR.
    void SetColour(qint32 colour);
    qint32 Colour() const { return m_colour; }

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    qint32 m_colour = 0;
};
