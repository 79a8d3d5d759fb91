// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "MouseHold.h"

#include <QWidget>

/// The handle between two areas that are laid out by hand. A drag moves a picture of the handle
/// over the parent and tells the new place when it is let go; a drag that loses the mouse moves
/// nothing. The arrow keys move it in steps.
/// Places are in twips from the parent's left or top edge.
class SplitterHandle final : public QWidget
{
    Q_OBJECT

  public:
    /// The orientation is that of the movement. While dragged the handle keeps dragLimit twips
    /// away from either end of the parent. The picture is a sibling; both belong to the parent.
    SplitterHandle(Qt::Orientation movement, int dragLimit, QWidget *parent);

    QWidget *Picture() const { return m_picture; }

  Q_SIGNALS:
    void Moved(int twips);

  protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

  private:
    bool Horizontal() const { return m_movement == Qt::Horizontal; }
    int PlaceOf(const QWidget &widget) const;

    Qt::Orientation m_movement;
    int m_dragLimit;
    QWidget *m_picture;
    MouseHold m_hold;
};
