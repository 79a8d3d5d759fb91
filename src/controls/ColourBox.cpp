// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ColourBox.h"

#include "BgrColour.h"

#include <QPainter>

ColourBox::ColourBox(const char *name, const char *accessibleName)
{
    setObjectName(QString::fromLatin1(name));
    setAccessibleName(QString::fromLatin1(accessibleName));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void ColourBox::SetColour(qint32 colour)
{
    m_colour = colour;
    const QString code = BgrColour::ToColour(colour).name();
    setToolTip(code);
    setAccessibleDescription(code);
    update();
}

QSize ColourBox::sizeHint() const
{
    return {48, fontMetrics().height() + 6};
}

/// The frame is in the colour of text, so that it stands out whatever the box shows.
void ColourBox::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const int frame = hasFocus() ? 3 : 1;
    painter.fillRect(rect(),
                     palette().color(hasFocus() ? QPalette::Highlight : QPalette::WindowText));
    painter.fillRect(rect().adjusted(frame, frame, -frame, -frame),
                     palette().color(QPalette::Base));
    painter.fillRect(rect().adjusted(frame + 1, frame + 1, -frame - 1, -frame - 1),
                     BgrColour::ToColour(m_colour));
}
