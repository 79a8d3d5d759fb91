// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramHeader.h"

#include <QAction>
#include <QMenu>
#include <QScopedValueRollback>
#include <QStandardItemModel>

#include <algorithm>

namespace
{

constexpr int SmallestColumn = 24;
constexpr int LargestColumn = 8192;
constexpr int Hex = int(TelegramColumn::Hex);
constexpr int Text = int(TelegramColumn::Text);

bool Shares(int column)
{
    return column == Hex || column == Text;
}

} // namespace

TelegramHeader::TelegramHeader(QWidget *parent) : QHeaderView(Qt::Horizontal, parent)
{
    auto *model = new QStandardItemModel(0, TelegramColumnCount, this);
    for (int column = 0; column < TelegramColumnCount; ++column) {
        const TelegramColumnRow &row = TelegramColumns::RowOf(column);
        auto *item = new QStandardItem(QString::fromUtf8(row.heading));
        item->setToolTip(QString::fromUtf8(row.toolTip));
        item->setTextAlignment(Qt::AlignVCenter | (row.right ? Qt::AlignRight : Qt::AlignLeft));
        model->setHorizontalHeaderItem(column, item);
    }
    m_widths.fill(TelegramColumns::FreeWidth);
    setModel(model);
    setSectionsMovable(false);
    setStretchLastSection(false);
    setMinimumSectionSize(SmallestColumn);
    setMaximumSectionSize(LargestColumn);
    setFocusPolicy(Qt::NoFocus);
    setContextMenuPolicy(Qt::CustomContextMenu);
    MakeColumns();
    connect(this, &QWidget::customContextMenuRequested, this, &TelegramHeader::ShowMenu);
    connect(this, &QHeaderView::sectionResized, this,
            [this](int column, int, int width) { NoteWidth(column, width); });
    connect(this, &QHeaderView::sectionHandleDoubleClicked, this, [this](int column) {
        m_widths[size_t(column)] = TelegramColumns::FreeWidth;
        Fit(m_room);
    });
}

void TelegramHeader::MakeColumns()
{
    for (int column = 0; column < TelegramColumnCount; ++column) {
        auto *action = new QAction(TelegramColumns::Headings()[column], this);
        action->setObjectName(QStringLiteral("mnuColumn_%1").arg(column));
        action->setCheckable(true);
        connect(action, &QAction::triggered, this,
                [this, column](bool show) { ShowColumn(column, show); });
        m_columns.append(action);
    }
}

void TelegramHeader::SetWidths(const TelegramColumns::Widths &widths)
{
    m_widths = widths;
    if (std::all_of(widths.begin(), widths.end(), [](int width) { return width == 0; }))
        m_widths.fill(TelegramColumns::FreeWidth);
    Fit(m_room);
}

void TelegramHeader::SetSuited(const TelegramColumns::Widths &widths)
{
    m_suited = widths;
    Fit(m_room);
}

void TelegramHeader::Fit(int room)
{
    m_room = room;
    const QScopedValueRollback<bool> fitting(m_fitting, true);
    int left = room;
    for (int column = 0; column < TelegramColumnCount; ++column) {
        const int width = m_widths[size_t(column)];
        setSectionHidden(column, width == 0);
        m_columns[column]->setChecked(width != 0);
        const bool free = width == TelegramColumns::FreeWidth;
        if (width == 0 || (free && Shares(column)))
            continue;
        resizeSection(column, free ? m_suited[size_t(column)]
                                   : std::clamp(width, SmallestColumn, LargestColumn));
        left -= sectionSize(column);
    }
    // A byte takes three columns of one and one of the other.
    const bool hex = m_widths[Hex] == TelegramColumns::FreeWidth;
    const bool text = m_widths[Text] == TelegramColumns::FreeWidth;
    const int more = left - m_suited[Hex] - m_suited[Text];
    const int forHex = text ? m_suited[Hex] + more * 3 / 4 : left;
    if (hex)
        resizeSection(Hex, std::max(forHex, m_suited[Hex]));
    if (text)
        resizeSection(Text, std::max(left - (hex ? sectionSize(Hex) : 0), m_suited[Text]));
    Q_EMIT Changed();
}

/// The last one that is shown stays.
void TelegramHeader::ShowColumn(int column, bool show)
{
    if (show || count() - hiddenSectionCount() > 1)
        m_widths[size_t(column)] = show ? TelegramColumns::FreeWidth : 0;
    Fit(m_room);
}

void TelegramHeader::NoteWidth(int column, int width)
{
    if (m_fitting || width == 0)
        return;
    m_widths[size_t(column)] = width;
    Fit(m_room);
}

void TelegramHeader::ShowMenu(const QPoint &place)
{
    QMenu menu(this);
    menu.addActions(m_columns);
    menu.exec(viewport()->mapToGlobal(place));
}
