// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmAskLine.h"

#include "NamedButton.h"
#include "QuietLine.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <utility>

namespace
{

constexpr int LettersOfTheField = 44;

QLabel *PlainLabel(const QString &text)
{
    auto *label = new QLabel(text);
    label->setWordWrap(true);
    return label;
}

} // namespace

frmAskLine::frmAskLine(AskedLine asked, QWidget *parent)
    : QDialog(parent),
      m_asked(std::move(asked)),
      txtLine(new QLineEdit(m_asked.text)),
      m_fault(new QuietLine(*txtLine))
{
    setObjectName(m_asked.name);
    setWindowTitle(m_asked.title);
    txtLine->setObjectName(QStringLiteral("txtLine"));
    txtLine->setMinimumWidth(txtLine->fontMetrics().averageCharWidth() * LettersOfTheField);
    txtLine->selectAll();
    auto *caption = new QLabel(m_asked.caption);
    caption->setBuddy(txtLine);
    QPushButton *cmdOK = NamedButton("cmdOK", "OK");
    QPushButton *cmdCancel = NamedButton("CmdCancel", "Cancel");
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &frmAskLine::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(txtLine, &QLineEdit::textEdited, m_fault, [this] { m_fault->Say({}); });
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto *column = new QVBoxLayout(this);
    column->addWidget(caption);
    column->addWidget(txtLine);
    if (!m_asked.hint.isEmpty())
        column->addWidget(PlainLabel(m_asked.hint));
    column->addWidget(m_fault);
    column->addLayout(buttons);
}

QString frmAskLine::Text() const
{
    return txtLine->text();
}

void frmAskLine::accept()
{
    const QString fault = m_asked.Fault(Text());
    if (fault.isEmpty()) {
        QDialog::accept();
        return;
    }
    m_fault->Say(fault);
    txtLine->selectAll();
    txtLine->setFocus();
}
