// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmAbout.h"

#include "ClickLabel.h"
#include "Icons.h"
#include "NamedButton.h"
#include "Shell.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace
{

constexpr int IconSize = 64;

QLabel *MakeLabel(const char *name, const QString &text)
{
    auto *label = new QLabel(text);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

frmAbout::frmAbout(const Texts &texts, Shell &shell, UserPrompts &prompts, QWidget *parent)
    : QDialog(parent), m_shell(shell), m_prompts(prompts)
{
    setObjectName(QStringLiteral("frmAbout"));
    setWindowTitle(QStringLiteral("About Serimonde"));
    auto *page = new QVBoxLayout(this);
    page->setSizeConstraint(QLayout::SetFixedSize);
    MakeTitle(page, texts);
    MakeLinks(page, texts);
    MakeCredits(page);
    MakeButtons(page);
}

void frmAbout::MakeTitle(QVBoxLayout *page, const Texts &texts)
{
    auto *picture = MakeLabel("imgSerimonde", QString());
    picture->setPixmap(Icons::Named("about").pixmap(IconSize));
    picture->setAccessibleName(QStringLiteral("Icon of Serimonde"));

    auto *title = MakeLabel("lblTitle", QStringLiteral("Serimonde"));
    QFont large = title->font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    large.setBold(true);
    title->setFont(large);

    auto *column = new QVBoxLayout;
    column->addWidget(title);
    column->addWidget(MakeLabel("lblVersion", QStringLiteral("Version ") + texts.version));
    column->addSpacing(6);
    column->addWidget(
        MakeLabel("lblDescription",
                  QStringLiteral("A development tool for serial communication protocols.")));
    auto *row = new QHBoxLayout;
    row->addWidget(picture, 0, Qt::AlignTop);
    row->addSpacing(12);
    row->addLayout(column, 1);
    page->addLayout(row);
    page->addSpacing(12);
}

void frmAbout::MakeLinks(QVBoxLayout *page, const Texts &texts)
{
    auto *row = new QHBoxLayout;
    row->addWidget(MakeLabel("labSendEMailTo", QStringLiteral("E-Mail to:")));
    row->addWidget(MakeLink("labEmail", texts.email, QStringLiteral("mailto:%1").arg(texts.email)));
    row->addStretch();
    page->addLayout(row);
    page->addWidget(MakeLink("labWeb", texts.web, texts.web), 0, Qt::AlignLeft);
}

QWidget *frmAbout::MakeLink(const char *name, const QString &text, const QString &link)
{
    auto *label = new ClickLabel(text);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    label->setMinimumWidth(label->sizeHint().width());
    label->MakeLink();
    connect(label, &ClickLabel::Clicked, this,
            [this, link] { FollowLink(m_shell, m_prompts, link); });
    return label;
}

void frmAbout::MakeCredits(QVBoxLayout *page)
{
    auto *line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    page->addSpacing(6);
    page->addWidget(line);
    page->addWidget(MakeLabel("lblCredits", QStringLiteral("Made by the Serimonde developers.")));
    page->addWidget(
        MakeLabel("lblLicence", QStringLiteral("Free software under the MIT licence.")));
    page->addSpacing(6);
}

void frmAbout::MakeButtons(QVBoxLayout *page)
{
    QPushButton *cmdSysInfo = NamedButton("cmdSysInfo", "&System Info...");
    cmdSysInfo->setAutoDefault(false);
    connect(cmdSysInfo, &QPushButton::clicked, this, [this] { ShowSystemInformation(); });

    QPushButton *cmdOK = NamedButton("cmdOK", "OK");
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);

    auto *row = new QHBoxLayout;
    row->addWidget(cmdSysInfo);
    row->addStretch();
    row->addWidget(cmdOK);
    page->addLayout(row);
    cmdOK->setFocus();
}
