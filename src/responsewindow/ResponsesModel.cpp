// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ResponsesModel.h"

#include "ResponseText.h"
#include "TelegramCells.h"

#include <QColor>
#include <QFont>
#include <QLocale>

#include <algorithm>
#include <array>

namespace
{

struct Heading {
    const char *caption;
    const char *tip;
};
constexpr std::array<Heading, ResponsesModel::Columns> Headings = {
    Heading{"Sequence", "What was sent, said or received"},
    Heading{"Event", "What it did. Of what is received, the times are those from one to the next"},
    Heading{"Count", "How often"},
    Heading{"Answered", "How often an answer came within the limit"},
    Heading{"Unanswered", "How often none came within the limit, or before the next question"},
    Heading{"Last", "The latest time"},
    Heading{"Least", "The shortest time"},
    Heading{"Median", "Half of all took this time at most"},
    Heading{"95 %", "95 of 100 took this time at most"},
    Heading{"Greatest", "The longest time"}};

} // namespace

/// Both are in the order of the keys.
void ResponsesModel::Show(const QList<ResponseRow> &rows, bool twoChannels)
{
    const auto isBefore = [](const ResponseRow &one, const ResponseRow &other) {
        return one.key < other.key;
    };
    const bool isAnew =
        twoChannels != m_twoChannels ||
        !std::includes(rows.cbegin(), rows.cend(), m_rows.cbegin(), m_rows.cend(), isBefore);
    if (isAnew) {
        beginResetModel();
        m_rows = rows;
        m_twoChannels = twoChannels;
        endResetModel();
        return;
    }
    for (int i = 0; i < rows.size(); ++i) {
        if (i >= m_rows.size() || !(m_rows[i].key == rows[i].key)) {
            beginInsertRows({}, i, i);
            m_rows.insert(i, rows[i]);
            endInsertRows();
        } else if (m_rows[i] != rows[i]) {
            m_rows[i] = rows[i];
            Q_EMIT dataChanged(index(i, Count), index(i, Greatest));
        }
    }
}

int ResponsesModel::RowOf(const ResponseKey &key) const
{
    const auto found = std::find_if(m_rows.cbegin(), m_rows.cend(),
                                    [&key](const ResponseRow &row) { return row.key == key; });
    return found == m_rows.cend() ? -1 : int(found - m_rows.cbegin());
}

int ResponsesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int ResponsesModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(Columns);
}

/// -1 for a cell that is empty.
qint64 ResponsesModel::NumberIn(const ResponseRow &row, int column)
{
    const bool isQuestion = row.key.kind != ResponseKey::Kind::Detection;
    switch (column) {
    case Count:
        return row.count;
    case Answered:
        return isQuestion ? row.answered : -1;
    case Unanswered:
        return isQuestion ? row.unanswered : -1;
    case Last:
        return row.last;
    case Least:
        return row.least;
    case Median:
        return row.median;
    case Percentile95:
        return row.percentile95;
    default:
        return row.greatest;
    }
}

QString ResponsesModel::Text(const ResponseRow &row, int column) const
{
    if (column == Sequence)
        return ResponseText::Name(row.key);
    if (column == Event) {
        const bool isSaid = !m_twoChannels || row.key.kind == ResponseKey::Kind::Speech;
        return ResponseText::Event(row.key.kind) +
               (isSaid ? QString() : QStringLiteral(", channel %1").arg(row.key.channel + 1));
    }
    const qint64 number = NumberIn(row, column);
    if (number < 0)
        return {};
    return column >= Last ? TelegramCells::SpanText(number)
                          : QLocale(QLocale::English).toString(number);
}

QVariant ResponsesModel::data(const QModelIndex &index, int role) const
{
    const ResponseRow &row = m_rows[index.row()];
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole: // columns may be narrow
        return Text(row, column);
    case NumberRole:
        return column <= Event ? QVariant(Text(row, column)) : QVariant(NumberIn(row, column));
    case Qt::TextAlignmentRole:
        return int((column <= Event ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    case Qt::FontRole:
        if (column == Unanswered && row.unanswered > 0) {
            QFont bold;
            bold.setBold(true);
            return bold;
        }
        return {};
    default:
        return {};
    }
}

QVariant ResponsesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return QString::fromLatin1(Headings[size_t(section)].caption);
    if (role == Qt::ToolTipRole)
        return QString::fromLatin1(Headings[size_t(section)].tip);
    if (role == Qt::TextAlignmentRole)
        return int((section <= Event ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    return {};
}
