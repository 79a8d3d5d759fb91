// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QMenu>

/// A menu in which some entries have a number, from 1 to 9: while it is open, the key of the number
/// chooses the entry. The number is painted where other entries have their keys; the entry's text
/// stays without it.
class NumberedMenu final : public QMenu
{
    Q_OBJECT

  public:
    using QMenu::QMenu;

    /// An entry of this menu; it has the next number.
    void Number(QAction *entry) { m_numbered << entry; }

  protected:
    void keyPressEvent(QKeyEvent *event) override;
    void initStyleOption(QStyleOptionMenuItem *option, const QAction *action) const override;

  private:
    QList<QAction *> m_numbered;
};
