// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "FreeColumn.h"

#include <QEvent>
#include <QHeaderView>
#include <QScopedValueRollback>
#include <QTreeView>

namespace
{

/// In a view with less room the columns are scrolled, in logical pixels.
constexpr int LeastFreeWidth = 80;

} // namespace

FreeColumn::FreeColumn(QTreeView &view, int column) : QObject(&view), m_view(view), m_column(column)
{
    view.viewport()->installEventFilter(this);
    connect(view.header(), &QHeaderView::sectionResized, this, &FreeColumn::Follow);
    connect(view.header(), &QHeaderView::sectionHandleDoubleClicked, this, [this](int section) {
        if (section == m_column)
            SetFree(true);
    });
}

void FreeColumn::SetFree(bool free)
{
    m_free = free;
    Fit();
}

int FreeColumn::StoredWidth() const
{
    return m_free ? m_preset : m_view.columnWidth(m_column);
}

void FreeColumn::Fit()
{
    if (!m_free)
        return;
    const QScopedValueRollback<bool> fitting(m_fitting, true);
    const int others = m_view.header()->length() - m_view.columnWidth(m_column);
    m_view.setColumnWidth(m_column, qMax(LeastFreeWidth, m_view.viewport()->width() - others));
}

/// A width of its own ends it; any other column only leaves more or less.
void FreeColumn::Follow(int resized)
{
    if (m_fitting)
        return;
    if (resized == m_column)
        m_free = false;
    else
        Fit();
}

bool FreeColumn::eventFilter(QObject *viewport, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        Fit();
    return QObject::eventFilter(viewport, event);
}
