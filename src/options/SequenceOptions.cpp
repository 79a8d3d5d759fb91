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
    for (const char *caption : RepresentationCaptions)
        m_representation->addItem(QString::fromLatin1(caption));

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
    const bool listed =
        values.sequences.Display >= 0 && values.sequences.Display < RepresentationCount;
    m_representation->setCurrentIndex(listed ? values.sequences.Display : -1);
}

void SequenceOptions::Store(OptionsValues &values) const
{
    if (m_representation->currentIndex() >= 0)
        values.sequences.Display = qint16(m_representation->currentIndex());
}
