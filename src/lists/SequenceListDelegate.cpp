// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceListDelegate.h"

#include "ByteLook.h"
#include "ControlPictures.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOptionButton>

#include <algorithm>

namespace
{

constexpr int LargestButtonWidth = 48;
/// Room above and below the text of a row.
constexpr int RowMargin = 3;

QStyle *StyleOf(const QStyleOptionViewItem &cell)
{
    return cell.widget ? cell.widget->style() : QApplication::style();
}

/// What the button and the box share: enabled, held down or not, and where they stand.
QStyleOptionButton ButtonOption(const QStyleOptionViewItem &cell, QSize size, bool pressed)
{
    QStyleOptionButton button;
    button.palette = cell.palette;
    button.direction = cell.direction;
    button.state = cell.state & (QStyle::State_Enabled | QStyle::State_Active);
    if (pressed)
        button.state |= QStyle::State_Sunken;
    button.rect = QStyle::alignedRect(cell.direction, Qt::AlignCenter,
                                      size.boundedTo(cell.rect.size()), cell.rect);
    return button;
}

/// A style may draw the outline of a box in a shade of the window, which on a dark base nobody
/// sees. A tone between base and text stands out on both.
QColor OutlineTone(const QPalette &palette)
{
    const QColor base = palette.color(QPalette::Base);
    const QColor text = palette.color(QPalette::Text);
    const auto between = [](int from, int to) { return from + (to - from) * 3 / 5; };
    return {between(base.red(), text.red()), between(base.green(), text.green()),
            between(base.blue(), text.blue())};
}

/// From one item of a sequence as ASCII to the next: the item and what separates it.
constexpr qsizetype ItemPitch = 4;

bool IsControl(char byte)
{
    return ByteLook::KindOf(uchar(byte)) == ByteLook::Kind::Control;
}

QColor TextColour(const QStyleOptionViewItem &cell)
{
    const bool active = cell.state & QStyle::State_Active;
    const auto group = !(cell.state & QStyle::State_Enabled) ? QPalette::Disabled
                       : active                              ? QPalette::Active
                                                             : QPalette::Inactive;
    return cell.palette.color(group, cell.state & QStyle::State_Selected ? QPalette::HighlightedText
                                                                         : QPalette::Text);
}

/// A triangle that points to where the bytes go.
void PaintArrow(QPainter &painter, const QRect &button, const QColor &colour)
{
    const qreal half = qMin(button.height(), button.width()) * 0.24;
    const QPointF centre = QRectF(button).center();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPolygon(QPolygonF({centre + QPointF(-half * 0.8, -half), centre + QPointF(half, 0),
                                   centre + QPointF(-half * 0.8, half)}));
    painter.restore();
}

/// An arrow that comes round again.
void PaintRound(QPainter &painter, const QRect &button, const QColor &colour)
{
    const qreal radius = qMin(button.height(), button.width()) * 0.26;
    const QPointF centre = QRectF(button).center();
    constexpr int Degree = 16;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, radius * 0.4));
    painter.drawArc(QRectF(centre - QPointF(radius, radius), QSizeF(2 * radius, 2 * radius)),
                    90 * Degree, 270 * Degree);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    const QPointF top = centre - QPointF(0, radius);
    painter.drawPolygon(
        QPolygonF({top + QPointF(-radius * 0.1, -radius * 0.8), top + QPointF(radius * 0.9, 0),
                   top + QPointF(-radius * 0.1, radius * 0.8)}));
    painter.restore();
}

} // namespace

SequenceListDelegate::SequenceListDelegate(const SequenceListModel &model, QObject *parent)
    : QStyledItemDelegate(parent), m_model(model)
{
}

void SequenceListDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                 const QModelIndex &index) const
{
    const QByteArray &bytes = m_model.RowAt(index.row()).bytes;
    if (index.column() == SequenceListModel::SequenceColumn &&
        std::any_of(bytes.begin(), bytes.end(), IsControl)) {
        QStyleOptionViewItem cell = option;
        initStyleOption(&cell, index);
        PaintSequence(*painter, cell, bytes);
        return;
    }
    if (index.column() != SequenceListModel::MarkColumn) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    StyleOf(option)->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    if (index.row() >= m_model.Count())
        return;
    if (m_model.Mark() == SequenceMark::SendButton)
        PaintSendButton(*painter, option, index.row());
    else
        PaintActiveBox(*painter, option, index.row());
}

/// The text is the usual one, with room in place of the boxes, and the pictures stand in there.
void SequenceListDelegate::PaintSequence(QPainter &painter, const QStyleOptionViewItem &given,
                                         const QByteArray &bytes) const
{
    const QStyle *style = StyleOf(given);
    QStyleOptionViewItem cell = given;
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &cell, cell.widget) + 1;
    const QRect room = style->subElementRect(QStyle::SE_ItemViewItemText, &cell, cell.widget)
                           .adjusted(margin, 0, -margin, 0);
    for (qsizetype i = 0; i < bytes.size() && i * ItemPitch < cell.text.size(); ++i) {
        if (IsControl(bytes[i]))
            cell.text[i * ItemPitch] = QChar::Nbsp;
    }
    const QString whole = cell.text;
    cell.text = cell.fontMetrics.elidedText(whole, cell.textElideMode, room.width());
    style->drawControl(QStyle::CE_ItemViewItem, &cell, &painter, cell.widget);

    const QFontMetricsF metrics(cell.font);
    const qreal advance = metrics.horizontalAdvance(u'0');
    const qreal dot = ControlPictures::DotFor(advance, painter.device()->devicePixelRatioF());
    const qsizetype shown = cell.text == whole ? whole.size() : cell.text.size() - 1;
    ControlPictures::Strokes pictures;
    for (qsizetype i = 0; i < bytes.size() && i * ItemPitch < shown; ++i) {
        const qreal left = room.left() + metrics.horizontalAdvance(whole, int(i * ItemPitch));
        if (IsControl(bytes[i]))
            pictures.Add({left, qreal(room.top()), advance, qreal(room.height())}, uchar(bytes[i]),
                         dot);
    }
    painter.save();
    painter.setClipRect(room, Qt::IntersectClip);
    painter.setPen(TextColour(cell));
    pictures.Draw(painter, dot);
    painter.restore();
}

void SequenceListDelegate::PaintSendButton(QPainter &painter, const QStyleOptionViewItem &cell,
                                           int row) const
{
    const bool repeats = m_model.Repeats(row);
    const bool pressed = row == m_pressedRow;
    QStyleOptionButton button = ButtonOption(
        cell, {qMin(LargestButtonWidth, cell.rect.width() - 4), cell.rect.height() - 2}, pressed);
    if (!pressed)
        button.state |= QStyle::State_Raised;
    if (repeats)
        button.palette.setColor(QPalette::Button, cell.palette.color(QPalette::Highlight));
    StyleOf(cell)->drawControl(QStyle::CE_PushButtonBevel, &button, &painter, cell.widget);
    if (repeats)
        PaintRound(painter, button.rect, cell.palette.color(QPalette::HighlightedText));
    else
        PaintArrow(painter, button.rect, cell.palette.color(QPalette::ButtonText));
}

void SequenceListDelegate::PaintActiveBox(QPainter &painter, const QStyleOptionViewItem &cell,
                                          int row) const
{
    const QStyle *style = StyleOf(cell);
    const QSize size(style->pixelMetric(QStyle::PM_IndicatorWidth, &cell, cell.widget),
                     style->pixelMetric(QStyle::PM_IndicatorHeight, &cell, cell.widget));
    QStyleOptionButton box = ButtonOption(cell, size, row == m_pressedRow);
    box.palette.setColor(QPalette::Window, OutlineTone(cell.palette));
    box.state |= m_model.RowAt(row).active ? QStyle::State_On : QStyle::State_Off;
    style->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, cell.widget);
}

QSize SequenceListDelegate::sizeHint(const QStyleOptionViewItem &option,
                                     const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    if (index.column() == SequenceListModel::MarkColumn)
        size.setWidth(LargestButtonWidth);
    const int box = StyleOf(option)->pixelMetric(QStyle::PM_IndicatorHeight, &option);
    size.setHeight(qMax(option.fontMetrics.height(), box) + 2 * RowMargin);
    return size;
}

/// The list itself follows the mouse; the usual ways of ticking a box would bypass its signals.
bool SequenceListDelegate::editorEvent(QEvent *, QAbstractItemModel *, const QStyleOptionViewItem &,
                                       const QModelIndex &)
{
    return false;
}
