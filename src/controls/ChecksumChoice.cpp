// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ChecksumChoice.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>

namespace
{

/// No telegram is longer.
constexpr int HighestFirst = 65535;

constexpr int LowFirst = 0;
constexpr int HighFirst = 1;

} // namespace

ChecksumChoice::ChecksumChoice(const QString &none, QWidget *parent)
    : QWidget(parent), cmbKind(new QComboBox), spnFirst(new QSpinBox), cmbOrder(new QComboBox)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(cmbKind);
    MakeKinds(none);
    MakeDetails(*row);
    row->addStretch();
    ChooseKind();

    connect(cmbKind, &QComboBox::currentIndexChanged, this, [this] {
        ChooseKind();
        Q_EMIT Changed();
    });
    connect(spnFirst, &QSpinBox::valueChanged, this, &ChecksumChoice::Changed);
    connect(cmbOrder, &QComboBox::currentIndexChanged, this, &ChecksumChoice::Changed);
}

void ChecksumChoice::MakeKinds(const QString &none)
{
    cmbKind->setObjectName(QStringLiteral("cmbChecksum"));
    cmbKind->setAccessibleName(QStringLiteral("Checksum"));
    if (!none.isEmpty())
        cmbKind->addItem(none);
    for (const ChecksumRow &row : Checksum::Rows())
        cmbKind->addItem(QString::fromLatin1(row.caption), int(row.kind));
}

void ChecksumChoice::MakeDetails(QHBoxLayout &row)
{
    spnFirst->setObjectName(QStringLiteral("spnChecksumFirst"));
    spnFirst->setRange(1, HighestFirst);
    spnFirst->setAccessibleName(QStringLiteral("First byte of the checksum"));
    spnFirst->setToolTip(QStringLiteral("The first byte that the checksum is made of"));
    cmbOrder->setObjectName(QStringLiteral("cmbChecksumOrder"));
    cmbOrder->addItems({QStringLiteral("Low byte first"), QStringLiteral("High byte first")});
    cmbOrder->setAccessibleName(QStringLiteral("Order of the checksum's bytes"));
    auto *from = new QLabel(QStringLiteral("from byte"));
    from->setBuddy(spnFirst);
    row.addWidget(from);
    row.addWidget(spnFirst);
    row.addWidget(cmbOrder);
}

std::optional<ChecksumRule> ChecksumChoice::Rule() const
{
    const QVariant kind = cmbKind->currentData();
    if (!kind.isValid())
        return {};
    return ChecksumRule{.kind = ChecksumKind(kind.toInt()),
                        .first = spnFirst->value(),
                        .highByteFirst = cmbOrder->currentIndex() == HighFirst};
}

void ChecksumChoice::SetRule(const std::optional<ChecksumRule> &rule)
{
    const QSignalBlocker blocker(this);
    cmbKind->setCurrentIndex(rule ? cmbKind->findData(int(rule->kind)) : 0);
    if (rule) {
        spnFirst->setValue(int(rule->first));
        cmbOrder->setCurrentIndex(rule->highByteFirst ? HighFirst : LowFirst);
    }
    EnableDetails();
}

/// In the order that is usual for it.
void ChecksumChoice::ChooseKind()
{
    if (const std::optional<ChecksumRule> rule = Rule())
        cmbOrder->setCurrentIndex(Checksum::RowOf(rule->kind).highByteFirst ? HighFirst : LowFirst);
    EnableDetails();
}

void ChecksumChoice::EnableDetails()
{
    const std::optional<ChecksumRule> rule = Rule();
    const bool ofBytes = rule && Checksum::RowOf(rule->kind).frame == ChecksumFrame::Bytes;
    spnFirst->setEnabled(ofBytes);
    cmbOrder->setEnabled(ofBytes && Checksum::RowOf(rule->kind).width > 1);
}
