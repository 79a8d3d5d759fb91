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

ChecksumChoice::ChecksumChoice(const QStringList &others, QWidget *parent)
    : QWidget(parent),
      m_others(int(others.size())),
      cboKind(new QComboBox),
      spnFirst(new QSpinBox),
      cboOrder(new QComboBox)
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(cboKind);
    MakeKinds(others);
    MakeDetails(*row);
    row->addStretch();
    ChooseKind();

    connect(cboKind, &QComboBox::currentIndexChanged, this, [this] {
        ChooseKind();
        Q_EMIT Changed();
    });
    connect(spnFirst, &QSpinBox::valueChanged, this, &ChecksumChoice::Changed);
    connect(cboOrder, &QComboBox::currentIndexChanged, this, &ChecksumChoice::Changed);
}

void ChecksumChoice::MakeKinds(const QStringList &others)
{
    cboKind->setObjectName(QStringLiteral("cboChecksum"));
    cboKind->setAccessibleName(QStringLiteral("Checksum"));
    cboKind->addItems(others);
    for (const ChecksumRow &row : Checksum::Rows())
        cboKind->addItem(QString::fromLatin1(row.caption), int(row.kind));
}

void ChecksumChoice::MakeDetails(QHBoxLayout &row)
{
    spnFirst->setObjectName(QStringLiteral("spnChecksumFirst"));
    spnFirst->setRange(1, HighestFirst);
    spnFirst->setAccessibleName(QStringLiteral("First byte of the checksum"));
    spnFirst->setToolTip(QStringLiteral("The first byte that the checksum is made of"));
    cboOrder->setObjectName(QStringLiteral("cboChecksumOrder"));
    cboOrder->addItems({QStringLiteral("Low byte first"), QStringLiteral("High byte first")});
    cboOrder->setAccessibleName(QStringLiteral("Order of the checksum's bytes"));
    auto *from = new QLabel(QStringLiteral("from byte"));
    from->setBuddy(spnFirst);
    row.addWidget(from);
    row.addWidget(spnFirst);
    row.addWidget(cboOrder);
}

std::optional<ChecksumRule> ChecksumChoice::Rule() const
{
    const QVariant kind = cboKind->currentData();
    if (!kind.isValid())
        return {};
    return ChecksumRule{.kind = ChecksumKind(kind.toInt()),
                        .first = spnFirst->value(),
                        .highByteFirst = cboOrder->currentIndex() == HighFirst};
}

int ChecksumChoice::Other() const
{
    return cboKind->currentIndex() < m_others ? cboKind->currentIndex() : -1;
}

void ChecksumChoice::SetOther(int other)
{
    const QSignalBlocker blocker(this);
    cboKind->setCurrentIndex(other);
}

void ChecksumChoice::SetRule(const std::optional<ChecksumRule> &rule)
{
    const QSignalBlocker blocker(this);
    cboKind->setCurrentIndex(rule ? cboKind->findData(int(rule->kind)) : 0);
    if (rule) {
        spnFirst->setValue(int(rule->first));
        cboOrder->setCurrentIndex(rule->highByteFirst ? HighFirst : LowFirst);
    }
    EnableDetails();
}

/// In the order that is usual for it.
void ChecksumChoice::ChooseKind()
{
    if (const std::optional<ChecksumRule> rule = Rule())
        cboOrder->setCurrentIndex(Checksum::RowOf(rule->kind).highByteFirst ? HighFirst : LowFirst);
    EnableDetails();
}

void ChecksumChoice::EnableDetails()
{
    const std::optional<ChecksumRule> rule = Rule();
    const bool ofBytes = rule && Checksum::RowOf(rule->kind).frame == ChecksumFrame::Bytes;
    spnFirst->setEnabled(ofBytes);
    cboOrder->setEnabled(ofBytes && Checksum::RowOf(rule->kind).width > 1);
}
