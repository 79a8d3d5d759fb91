// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Lamp.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>

namespace
{

constexpr QColor Lit(0x33, 0xC4, 0x4D);
constexpr int Gap = 6;

} // namespace

Lamp::Lamp(const QString &name, QWidget *parent) : QLabel(parent), m_name(name)
{
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::TabFocus);
    setText(TextFor(m_on));
    KeepPlace();
}

QString Lamp::TextFor(std::optional<bool> on) const
{
    return m_name + (!on   ? QLatin1String(" not available")
                     : *on ? QLatin1String(" on")
                           : QLatin1String(" off"));
}

void Lamp::Show(std::optional<bool> on)
{
    m_on = on;
    setText(TextFor(on));
}

void Lamp::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        KeepPlace();
}

/// Nothing beside it moves when its text changes.
void Lamp::KeepPlace()
{
    const int circle = fontMetrics().height();
    setContentsMargins(circle + Gap, 1, 2, 1);
    setMinimumWidth(circle + Gap + 4 + fontMetrics().horizontalAdvance(TextFor(std::nullopt)));
}

QRectF Lamp::Circle() const
{
    const double size = fontMetrics().ascent();
    return {2, (height() - size) / 2, size, size};
}

void Lamp::paintEvent(QPaintEvent *event)
{
    QLabel::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF circle = Circle();
    painter.setPen(QPen(palette().color(QPalette::WindowText), 1.5));
    if (m_on) {
        painter.setBrush(*m_on ? QBrush(Lit) : QBrush(Qt::NoBrush));
        painter.drawEllipse(circle);
    } else {
        painter.drawLine(QPointF(circle.left(), circle.center().y()),
                         QPointF(circle.right(), circle.center().y()));
    }
    if (!hasFocus())
        return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}
