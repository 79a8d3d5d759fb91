// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmInsertChecksum.h"

#include "ChecksumChoice.h"
#include "Common_Function.h"
#include "NamedButton.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QVBoxLayout>

#include <utility>

frmInsertChecksum::frmInsertChecksum(QByteArray sequence, qsizetype last, const ChecksumRule &rule,
                                     QWidget *parent)
    : QDialog(parent),
      m_sequence(std::move(sequence)),
      m_choice(new ChecksumChoice),
      spnLast(new QSpinBox),
      txtBytes(new QLineEdit),
      lblWhy(new QLabel),
      cmdOK(NamedButton("cmdOK", "OK"))
{
    setObjectName(QStringLiteral("frmInsertChecksum"));
    setWindowTitle(QStringLiteral("Insert Checksum"));
    m_choice->SetRule(rule);
    spnLast->setObjectName(QStringLiteral("spnLast"));
    spnLast->setRange(0, int(m_sequence.size()));
    spnLast->setValue(int(last > 0 ? last : m_sequence.size()));
    txtBytes->setObjectName(QStringLiteral("txtBytes"));
    txtBytes->setReadOnly(true);
    lblWhy->setObjectName(QStringLiteral("lblWhy"));
    lblWhy->setWordWrap(true);

    auto *fields = new QFormLayout;
    fields->addRow(QStringLiteral("Checksum"), m_choice);
    fields->addRow(QStringLiteral("&up to byte"), spnLast);
    fields->addRow(QStringLiteral("Inserted behind it"), txtBytes);
    auto *cmdCancel = NamedButton("cmdCancel", "Cancel");
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *column = new QVBoxLayout(this);
    column->addLayout(fields);
    column->addWidget(lblWhy);
    column->addStretch();
    column->addLayout(buttons);

    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_choice, &ChecksumChoice::Changed, this, &frmInsertChecksum::Refresh);
    connect(spnLast, &QSpinBox::valueChanged, this, &frmInsertChecksum::Refresh);
    Refresh();
}

ChecksumRule frmInsertChecksum::Rule() const
{
    return m_choice->Rule().value_or(ChecksumRule());
}

qsizetype frmInsertChecksum::Last() const
{
    return spnLast->value();
}

QByteArray frmInsertChecksum::Bytes() const
{
    return Checksum::Of(Rule(), QByteArrayView(m_sequence).first(Last()));
}

/// Characters are shown as such, too: that is what the protocol speaks of.
void frmInsertChecksum::Refresh()
{
    const QByteArray bytes = Bytes();
    QString text = QString::fromLatin1(Common_Function::SeqToHexText(bytes));
    if (!bytes.isEmpty() && Checksum::RowOf(Rule().kind).frame != ChecksumFrame::Bytes)
        text += QStringLiteral("  (%1)").arg(QString::fromLatin1(bytes));
    txtBytes->setText(text);
    lblWhy->setText(Checksum::WhyNone(Rule(), QByteArrayView(m_sequence).first(Last())));
    cmdOK->setEnabled(!bytes.isEmpty());
}
