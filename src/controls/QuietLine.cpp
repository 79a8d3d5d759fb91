// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QuietLine.h"

#include <QEvent>
#include <QFontMetrics>

namespace
{

constexpr int Rows = 2;

} // namespace

QuietLine::QuietLine(QWidget &field, QWidget *parent) : QLabel(parent), m_field(field)
{
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    QSizePolicy policy = sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    setSizePolicy(policy);
    KeepPlace();
    hide();
}

void QuietLine::Say(const QString &text)
{
    setText(text);
    m_field.setAccessibleDescription(text);
    setVisible(!text.isEmpty());
}

void QuietLine::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        KeepPlace();
}

void QuietLine::KeepPlace()
{
    setFixedHeight(Rows * fontMetrics().lineSpacing());
}
