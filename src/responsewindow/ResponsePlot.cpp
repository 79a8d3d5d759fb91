// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ResponsePlot.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <array>
#include <utility>

namespace
{

constexpr int Pad = 6;
constexpr int TickLength = 4;
constexpr int LabelsApart = 14; ///< pixels between what two ticks say
/// A label of a time of day, or of a decade.
const QString WidestLabel = QStringLiteral("00:00:00.000");
const QString UsualLabel = QStringLiteral("00:00:00");

QColor Between(const QColor &one, const QColor &other, double share)
{
    const auto mix = [share](int a, int b) { return int(a + (b - a) * share); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()),
            mix(one.blue(), other.blue())};
}

} // namespace

ResponsePlot::ResponsePlot()
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QSize ResponsePlot::sizeHint() const
{
    return {fontMetrics().height() * 24, fontMetrics().height() * 14};
}

QSize ResponsePlot::minimumSizeHint() const
{
    return {fontMetrics().height() * 11, fontMetrics().height() * 8};
}

void ResponsePlot::Show(std::shared_ptr<const ResponsePicture> picture, bool isLogarithmic,
                        qint64 limit)
{
    const bool isOther = !m_picture || !picture || m_picture->row.key != picture->row.key;
    const qint64 inHand = m_inHand < 0 || isOther ? -1 : m_marks[m_inHand].id;
    m_picture = std::move(picture);
    m_isLogarithmic = isLogarithmic;
    m_limit = limit;
    Arrange();
    const auto same = [inHand](const Mark &mark) { return mark.id == inHand; };
    const auto found =
        inHand < 0 ? m_marks.cend() : std::find_if(m_marks.cbegin(), m_marks.cend(), same);
    m_inHand = found == m_marks.cend() ? -1 : int(found - m_marks.cbegin());
    Describe();
}

/// Everything that depends on the picture and on the size.
void ResponsePlot::Arrange()
{
    m_marks.clear();
    m_underMouse = -1;
    if (!m_picture) {
        m_inHand = -1;
        update();
        return;
    }
    m_axes = AxesOf(*m_picture);
    const int line = fontMetrics().height();
    m_field = QRectF(rect()).adjusted(0, 2 * line + 2 * Pad, -RightMargin(*m_picture),
                                      -2 * line - TickLength - Pad);
    int left = 0;
    for (const PlotScale::Tick &tick : m_axes.up.Ticks(UpTicks()))
        left = std::max(left, fontMetrics().horizontalAdvance(tick.label));
    m_field.setLeft(left + TickLength + 2 * Pad);
    if (m_field.width() > 0 && m_field.height() > 0)
        m_marks = MarksOf(*m_picture);
    m_inHand = std::min(m_inHand, int(m_marks.size()) - 1);
    update();
}

int ResponsePlot::AcrossTicks() const
{
    const QString &label = m_axes.across.Unit().isEmpty() ? WidestLabel : UsualLabel;
    return std::max(1,
                    int(m_field.width()) / (fontMetrics().horizontalAdvance(label) + LabelsApart));
}

int ResponsePlot::UpTicks() const
{
    return std::max(1, int(m_field.height()) / (fontMetrics().height() * 2));
}

const ResponsePlot::Mark *ResponsePlot::InSight() const
{
    const int mark = m_underMouse >= 0 ? m_underMouse : m_inHand;
    return mark < 0 ? nullptr : &m_marks[mark];
}

QString ResponsePlot::Readout() const
{
    const Mark *mark = InSight();
    return mark ? mark->text : QString();
}

void ResponsePlot::Describe()
{
    QString text = m_picture ? Summary(*m_picture) : QStringLiteral("Nothing is chosen.");
    if (m_inHand >= 0)
        text = m_marks[m_inHand].text + QStringLiteral(". ") + text;
    // Each tells of itself if it is another.
    setAccessibleName(m_picture ? Title(*m_picture) : QStringLiteral("Plot"));
    setAccessibleDescription(text);
}

void ResponsePlot::Take(int mark)
{
    m_inHand = mark;
    m_underMouse = -1;
    m_turn = 0;
    Describe();
    update();
}

/// What stands for several telegrams leads to one after the other.
void ResponsePlot::Choose()
{
    if (m_inHand < 0)
        return;
    const QList<qint64> &numbers = m_marks[m_inHand].numbers;
    if (!numbers.isEmpty())
        Q_EMIT Chosen(numbers[m_turn++ % numbers.size()]);
}

QColor ResponsePlot::MarkColour() const
{
    return palette().color(QPalette::Active, QPalette::Highlight);
}

QColor ResponsePlot::MissColour() const
{
    const bool isDark = palette().color(QPalette::Base).lightness() < 128;
    return isDark ? QColor(255, 120, 110) : QColor(190, 20, 20);
}

QColor ResponsePlot::FaintColour() const
{
    return Between(palette().color(QPalette::Base), palette().color(QPalette::Text), 0.18);
}

void ResponsePlot::PaintAxes(QPainter &painter) const
{
    const QColor text = palette().color(QPalette::Text);
    const int line = fontMetrics().height();
    for (const PlotScale::Tick &tick : m_axes.up.Ticks(UpTicks())) {
        const double y = m_field.bottom() - tick.share * m_field.height();
        painter.setPen(FaintColour());
        painter.drawLine(QPointF(m_field.left() - TickLength, y), QPointF(m_field.right(), y));
        painter.setPen(text);
        painter.drawText(QRectF(0, y - line / 2.0, m_field.left() - TickLength - Pad, line),
                         Qt::AlignRight | Qt::AlignVCenter, tick.label);
    }
    for (const PlotScale::Tick &tick : m_axes.across.Ticks(AcrossTicks())) {
        const double x = m_field.left() + tick.share * m_field.width();
        const double width = fontMetrics().horizontalAdvance(tick.label) + 2;
        const double left = std::clamp(x - width / 2, 0.0, this->width() - width);
        painter.setPen(FaintColour());
        painter.drawLine(QPointF(x, m_field.top()), QPointF(x, m_field.bottom() + TickLength));
        painter.setPen(text);
        painter.drawText(QRectF(left, m_field.bottom() + TickLength, width, line), Qt::AlignCenter,
                         tick.label);
    }
    painter.setPen(text);
    painter.drawLine(m_field.bottomLeft(), m_field.topLeft());
    painter.drawLine(m_field.bottomLeft(), m_field.bottomRight());
    painter.drawText(
        QRectF(m_field.left(), m_field.bottom() + TickLength + line, m_field.width(), line),
        Qt::AlignCenter, m_axes.across.Unit());
    painter.drawText(QRectF(Pad, line + Pad, m_field.left(), line), Qt::AlignLeft,
                     m_axes.up.Unit());
}

/// Its name, and what is said of the mark.
void ResponsePlot::PaintHead(QPainter &painter) const
{
    const int line = fontMetrics().height();
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.drawText(
        QRectF(Pad, Pad / 2.0, width() - 2 * Pad, line), Qt::AlignLeft,
        painter.fontMetrics().elidedText(accessibleName(), Qt::ElideRight, width() - 2 * Pad));
    painter.setFont(font());
    const QRectF place(m_field.left(), line + Pad, width() - m_field.left() - Pad, line);
    painter.drawText(place, Qt::AlignRight,
                     fontMetrics().elidedText(Readout(), Qt::ElideRight, int(place.width())));
}

void ResponsePlot::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Base));
    painter.setPen(palette().color(QPalette::Text));
    const bool isEmpty = m_marks.isEmpty();
    if (m_picture && !isEmpty) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        PaintHead(painter);
        PaintAxes(painter);
        PaintMarks(painter, m_marks);
        PaintLines(painter, *m_picture);
        if (const Mark *mark = InSight()) {
            painter.setPen(QPen(palette().color(QPalette::Text), 2));
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(mark->area.adjusted(-2, -2, 2, 2));
        }
    } else {
        painter.drawText(rect().adjusted(Pad, Pad, -Pad, -Pad), Qt::AlignCenter | Qt::TextWordWrap,
                         accessibleDescription());
    }
    painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), 2)
                              : QPen(FaintColour()));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ResponsePlot::resizeEvent(QResizeEvent *event)
{
    Arrange();
    QWidget::resizeEvent(event);
}

void ResponsePlot::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange)
        Arrange();
    QWidget::changeEvent(event);
}

void ResponsePlot::mouseMoveEvent(QMouseEvent *event)
{
    const int mark = MarkAt(m_marks, event->position());
    if (mark == std::exchange(m_underMouse, mark))
        return;
    setCursor(mark < 0 ? Qt::ArrowCursor : Qt::PointingHandCursor);
    update();
}

void ResponsePlot::leaveEvent(QEvent *event)
{
    m_underMouse = -1;
    update();
    QWidget::leaveEvent(event);
}

void ResponsePlot::mousePressEvent(QMouseEvent *event)
{
    const int mark = MarkAt(m_marks, event->position());
    if (event->button() != Qt::LeftButton || mark < 0) {
        QWidget::mousePressEvent(event);
        return;
    }
    if (mark != m_inHand)
        Take(mark);
    Choose();
}

void ResponsePlot::focusInEvent(QFocusEvent *event)
{
    update();
    QWidget::focusInEvent(event);
}

/// The keys that go from mark to mark are not for anybody else.
bool ResponsePlot::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Home ||
            key == Qt::Key_End)
            event->accept();
    }
    return QWidget::event(event);
}

void ResponsePlot::keyPressEvent(QKeyEvent *event)
{
    const int last = int(m_marks.size()) - 1;
    const int key = event->key();
    if (last >= 0 && key == Qt::Key_Left)
        Take(m_inHand < 0 ? last : std::max(0, m_inHand - 1));
    else if (last >= 0 && key == Qt::Key_Right)
        Take(m_inHand < 0 ? 0 : std::min(last, m_inHand + 1));
    else if (last >= 0 && key == Qt::Key_Home)
        Take(0);
    else if (last >= 0 && key == Qt::Key_End)
        Take(last);
    else if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
        Choose();
    else
        QWidget::keyPressEvent(event);
}
