// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortBox.h"

#include "ClickLabel.h"
#include "PlainText.h"
#include "PlainToolTip.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include <array>

namespace
{

/// By PortDevices::Source.
constexpr std::array<const char *, 3> Sources = {"this run", "your own assignment", "system name"};

} // namespace

QString PortMeaningText(int comNumber, const PortDevices::Meaning &meaning)
{
    if (meaning.source == PortDevices::Source::None) {
        return QStringLiteral("COM%1 has no device; assign one with the button beside this box")
            .arg(comNumber);
    }
    return QStringLiteral("COM%1 is ").arg(comNumber) + meaning.device + QStringLiteral(" (") +
           QLatin1String(Sources[size_t(meaning.source)]) + u')';
}

PortBox::PortBox(const char *boxName, const char *buttonName, const char *buttonCaption)
    : m_edit(new QLineEdit),
      m_meaning(new ClickLabel),
      m_button(new QPushButton(QString::fromLatin1(buttonCaption)))
{
    m_edit->setObjectName(QString::fromLatin1(boxName));
    m_edit->setFixedWidth(m_edit->fontMetrics().horizontalAdvance(QStringLiteral("00000000")));
    m_meaning->setObjectName(QString::fromLatin1(boxName) + QStringLiteral("Meaning"));
    m_meaning->setTextFormat(Qt::PlainText);
    m_meaning->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    m_button->setObjectName(QString::fromLatin1(buttonName));
    m_button->setToolTip(QStringLiteral("Show the ports of this machine and choose the device"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_edit);
    row->addWidget(m_button);
    row->addStretch();
    connect(m_edit, &QLineEdit::textChanged, this, &PortBox::UpdateMeaning);
    connect(m_button, &QPushButton::clicked, this, [this] {
        m_edit->setModified(true); // the number is used, so it has to be a COM number
        Q_EMIT DevicesRequested();
    });
}

void PortBox::Show(qint16 stored)
{
    m_stored = stored;
    m_edit->setText(QString::number(stored));
    UpdateMeaning();
}

PortNumber PortBox::Typed() const
{
    return ReadPortNumber(m_edit->text());
}

qint16 PortBox::Number() const
{
    return m_edit->isModified() && Typed().legal ? Typed().value : m_stored;
}

bool PortBox::IsFaulty() const
{
    return m_edit->isModified() && !Typed().legal;
}

void PortBox::Correct()
{
    m_edit->setText(QString::number(Typed().value));
    m_edit->setModified(true); // the number is meant, unlike a stored one that is only shown
    m_edit->selectAll();
}

void PortBox::UpdateMeaning()
{
    const QString text = Typed().legal ? PortMeaningText(Typed().value, MeaningOf(Typed().value))
                                       : QStringLiteral("A COM port has a number from %1 to %2")
                                             .arg(LeastPortNumber)
                                             .arg(MostPortNumber);
    m_edit->setToolTip(PlainToolTip(text));
    m_meaning->setText(PlainText(text));
    m_meaning->setToolTip(PlainToolTip(text));
    m_edit->setAccessibleDescription(PlainText(text));
}

void PortBox::SetAccessibleName(const QString &name)
{
    m_edit->setAccessibleName(name);
    m_button->setAccessibleName(QStringLiteral("Devices: ") + name);
}
