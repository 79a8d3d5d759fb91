// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceOptions.h"

#include "Representation.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

SequenceOptions::SequenceOptions() : m_representation(new QComboBox)
{
    auto *label =
        new QLabel(QStringLiteral("Display and Print format for the sequence definition"));
    label->setBuddy(m_representation);
    m_representation->setObjectName(QStringLiteral("PicOp2ComboDisplaySequences"));
    m_representation->setAccessibleName(label->text());
    for (const RepresentationRow &row : RepresentationRows)
        m_representation->addItem(QString::fromLatin1(row.caption));

    auto *frame = new QGroupBox(QStringLiteral("Sequence Windows Display Options"));
    auto *row = new QHBoxLayout(frame);
    row->addWidget(label);
    row->addWidget(m_representation);
    row->addStretch();
    auto *column = new QVBoxLayout(this);
    column->addWidget(frame);
    column->addStretch();
}

void SequenceOptions::Show(const OptionsValues &values)
{
    const qint16 display = values.sequences.Display;
    m_representation->setCurrentIndex(IsRepresentation(display) ? display : -1);
}

void SequenceOptions::Store(OptionsValues &values) const
{
    if (m_representation->currentIndex() >= 0)
        values.sequences.Display = qint16(m_representation->currentIndex());
}
