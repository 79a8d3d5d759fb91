// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QuietLine.h"

#include "PlainText.h"

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
    const QString plain = PlainLines(text);
    setText(plain);
    m_field.setAccessibleDescription(plain);
    setVisible(!plain.isEmpty());
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
