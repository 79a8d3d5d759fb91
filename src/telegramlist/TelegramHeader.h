// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramColumns.h"

#include <QHeaderView>

/// The headings of the list of telegrams: which columns are shown, and how wide. A column is as
/// wide as suits it until it is dragged; a double click on its right edge gives that back. HEX and
/// Text share what the others leave.
class TelegramHeader final : public QHeaderView
{
    Q_OBJECT

  public:
    explicit TelegramHeader(QWidget *parent);

    void SetWidths(const TelegramColumns::Widths &widths);
    const TelegramColumns::Widths &StoredWidths() const { return m_widths; }
    /// What suits the columns that do not share, and the least that suits those that do.
    void SetSuited(const TelegramColumns::Widths &widths);
    /// Shares what is left of a room, in pixels.
    void Fit(int room);
    /// Ticks that show and hide the columns, for menus.
    const QList<QAction *> &Columns() const { return m_columns; }

  Q_SIGNALS:
    /// A column is shown, hidden, or has another width.
    void Changed();

  private:
    void MakeColumns();
    void ShowColumn(int column, bool show);
    void NoteWidth(int column, int width);
    void ShowMenu(const QPoint &place);

    TelegramColumns::Widths m_widths;
    TelegramColumns::Widths m_suited{};
    QList<QAction *> m_columns;
    int m_room = 0;
    bool m_fitting = false;
};
