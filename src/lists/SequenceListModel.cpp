// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceListModel.h"

#include "ByteLook.h"
#include "SequenceToolTip.h"

#include <array>

namespace
{

constexpr std::array<const char *, 4> SendHeadings = {"Send", "Name", "Sequence", nullptr};
constexpr std::array<const char *, 4> ReceiveHeadings = {"Active", "Name", "Sequence", "Answer"};

/// What is shown of a text in its cell; no screen is wider.
constexpr qsizetype MaxCellLength = 2048;

} // namespace

SequenceListModel::SequenceListModel(SequenceMark mark, QObject *parent)
    : QAbstractTableModel(parent), m_mark(mark)
{
}

const SequenceListRow &SequenceListModel::RowAt(int index) const
{
    return Holds(index) ? m_rows[index] : m_emptyRow;
}

/// Rows come and go at the end, so that selection and scroll position stay where they are.
void SequenceListModel::SetRows(const QList<SequenceListRow> &rows)
{
    const int before = Count();
    const int after = int(rows.size());
    if (after > before) {
        beginInsertRows({}, before + 1, after);
        m_rows = rows;
        endInsertRows();
    } else if (after < before) {
        beginRemoveRows({}, after + 1, before);
        m_rows = rows;
        endRemoveRows();
    } else {
        m_rows = rows;
    }
    Q_EMIT dataChanged(index(0, 0), index(after, columnCount() - 1));
}

void SequenceListModel::AddRow(const SequenceListRow &row)
{
    beginInsertRows({}, Count(), Count());
    m_rows << row;
    endInsertRows();
}

void SequenceListModel::ModifyRow(int row, const SequenceListRow &content)
{
    if (!Holds(row))
        return;
    m_rows[row] = content;
    Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

void SequenceListModel::DeleteRow(int index)
{
    if (!Holds(index))
        return;
    beginRemoveRows({}, index, index);
    m_rows.removeAt(index);
    endRemoveRows();
}

void SequenceListModel::SetRepeating(const QHash<int, QString> &rows)
{
    if (rows == m_repeating)
        return;
    m_repeating = rows;
    Q_EMIT dataChanged(index(0, MarkColumn), index(Count(), MarkColumn));
}

void SequenceListModel::SetSequenceFont(const QFont &font)
{
    m_sequenceFont = font;
}

int SequenceListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : Count() + 1;
}

int SequenceListModel::columnCount(const QModelIndex &parent) const
{
    if (parent.isValid())
        return 0;
    return m_mark == SequenceMark::SendButton ? AnswerColumn : AnswerColumn + 1;
}

QVariant SequenceListModel::data(const QModelIndex &index, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return IsInvitation(index) ? QStringLiteral("New...")
                                   : CellText(index.row(), index.column());
    case Qt::ToolTipRole:
        return ToolTipText(index.row(), index.column());
    case Qt::AccessibleTextRole:
        return SpokenText(index.row(), index.column());
    case Qt::FontRole:
        return index.column() == SequenceColumn ? QVariant(m_sequenceFont) : QVariant();
    case Qt::CheckStateRole:
        if (index.column() != MarkColumn || !(flags(index) & Qt::ItemIsUserCheckable))
            return {};
        return RowAt(index.row()).active ? Qt::Checked : Qt::Unchecked;
    default:
        return {};
    }
}

/// The one cell of the empty row that says what the row is for.
bool SequenceListModel::IsInvitation(const QModelIndex &index) const
{
    return index.column() == NameColumn && !Holds(index.row());
}

QString SequenceListModel::CellText(int row, int column) const
{
    const SequenceListRow &content = RowAt(row);
    const auto shapes = [](const QByteArray &text) {
        return ByteLook::ToShapes(QByteArrayView(text).first(qMin(text.size(), MaxCellLength)));
    };
    switch (column) {
    case MarkColumn: // painted over; but typing finds rows by what the first column says
    case NameColumn:
        return shapes(content.name);
    case SequenceColumn:
        return shapes(content.sequence);
    case AnswerColumn:
        return shapes(content.answerName);
    default:
        return {};
    }
}

/// A row in hand is read by its first cell, so that one says which row it is.
QString SequenceListModel::SpokenText(int row, int column) const
{
    const bool sends = m_mark == SequenceMark::SendButton;
    if (!Holds(row)) {
        if (column != MarkColumn && column != NameColumn)
            return {};
        return sends ? QStringLiteral("New send sequence") : QStringLiteral("New receive sequence");
    }
    if (column != MarkColumn)
        return CellText(row, column);
    const QString subject = CellText(row, RowAt(row).name.isEmpty() ? SequenceColumn : NameColumn);
    if (sends && Repeats(row))
        return QStringLiteral("Stop repeating %1, %2").arg(subject, m_repeating[row]);
    if (sends)
        return QStringLiteral("Send ") + subject;
    return subject +
           (RowAt(row).active ? QStringLiteral(", active") : QStringLiteral(", not active"));
}

QString SequenceListModel::ToolTipText(int row, int column) const
{
    if (!Holds(row))
        return QStringLiteral("Click to add");
    if (column != MarkColumn)
        return SequenceToolTip::Text(RowAt(row), m_sequenceFont.family());
    if (Repeats(row))
        return QStringLiteral("Sent %1; click to stop that").arg(m_repeating[row]);
    return m_mark == SequenceMark::SendButton
               ? QStringLiteral("Send this sequence (Ctrl+Enter)")
               : QStringLiteral("Whether this sequence is looked for (Space)");
}

QVariant SequenceListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount())
        return {};
    if (role == Qt::TextAlignmentRole)
        return int(Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    const auto &headings = m_mark == SequenceMark::SendButton ? SendHeadings : ReceiveHeadings;
    return QString::fromLatin1(headings[size_t(section)]);
}

Qt::ItemFlags SequenceListModel::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    if (m_mark == SequenceMark::ActiveBox && index.column() == MarkColumn && Holds(index.row()))
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}
