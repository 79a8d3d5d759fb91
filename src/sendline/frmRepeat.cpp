// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmRepeat.h"

#include "NamedButton.h"
#include "RepeatChoice.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

frmRepeat::frmRepeat(const QString &name, const RepeatPlan &plan, QWidget *parent)
    : QDialog(parent), m_choice(new RepeatChoice)
{
    setObjectName(QStringLiteral("frmRepeat"));
    setWindowTitle(QStringLiteral("Repeat Send Sequence"));
    m_choice->SetPlan(plan);
    auto *lblName = new QLabel(QStringLiteral("Send \"%1\"").arg(name));
    lblName->setObjectName(QStringLiteral("lblName"));
    lblName->setTextFormat(Qt::PlainText);
    auto *cmdOK = NamedButton("cmdOK", "OK");
    auto *cmdCancel = NamedButton("cmdCancel", "Cancel");
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *column = new QVBoxLayout(this);
    column->addWidget(lblName);
    column->addWidget(m_choice);
    column->addStretch();
    column->addLayout(buttons);
}

RepeatPlan frmRepeat::Plan() const
{
    return m_choice->Plan();
}
