// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QTreeView;

/// Gives one column of a view the width that the others leave free, until the user drags it to a
/// width of its own. A double click on its right edge sets it free again.
class FreeColumn final : public QObject
{
    Q_OBJECT

  public:
    /// Belongs to the view, whose model has the column already.
    FreeColumn(QTreeView &view, int column);

    /// What stands in the store for a free column, in logical pixels.
    void SetPreset(int width) { m_preset = width; }
    void SetFree(bool free);
    int StoredWidth() const;

  protected:
    bool eventFilter(QObject *viewport, QEvent *event) override;

  private:
    void Fit();
    void Follow(int resized);

    QTreeView &m_view;
    const int m_column;
    int m_preset = 0;
    bool m_free = false;
    bool m_fitting = false;
};
