// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RowsModel.h"

#include "FixedPitchFont.h"
#include "PlainToolTip.h"

#include <QBrush>
#include <QGuiApplication>
#include <QPalette>

#include <utility>

namespace
{

/// A little of a warm colour in the ground, be that light or dark.
QBrush MarkedGround()
{
    const QColor ground = QGuiApplication::palette().color(QPalette::Base);
    constexpr QColor Warm(0xE0, 0x80, 0x00);
    const auto blend = [](int of, int with) { return (of * 3 + with) / 4; };
    return QColor(blend(ground.red(), Warm.red()), blend(ground.green(), Warm.green()),
                  blend(ground.blue(), Warm.blue()));
}

} // namespace

RowsModel::RowsModel(Source source, QObject *parent)
    : QAbstractTableModel(parent), m_source(std::move(source))
{
}

void RowsModel::SetCount(int count)
{
    beginResetModel();
    m_count = count;
    endResetModel();
}

int RowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_count;
}

int RowsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_source.headings.size());
}

QVariant RowsModel::data(const QModelIndex &index, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return m_source.text(index.row(), index.column());
    case Qt::ToolTipRole:
        return PlainToolTip(m_source.text(index.row(), index.column()));
    case Qt::FontRole:
        return FontOf(index);
    case Qt::BackgroundRole:
        return m_source.look(index.row()) == Look::Marked ? QVariant(MarkedGround()) : QVariant();
    default:
        return {};
    }
}

QVariant RowsModel::FontOf(const QModelIndex &index) const
{
    const bool marked = m_source.look(index.row()) == Look::Marked;
    const bool bytes = m_source.bytes.contains(index.column());
    if (!marked && !bytes)
        return {};
    QFont font = bytes ? FixedPitchFont::ViewFont() : QGuiApplication::font();
    font.setBold(marked);
    return font;
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return {};
    return m_source.headings.value(section);
}

QString RowsModel::RowText(int row) const
{
    QStringList texts;
    for (int column = 0; column < columnCount(); ++column)
        texts << m_source.text(row, column);
    return texts.join(u'\t');
}
