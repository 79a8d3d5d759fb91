// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SendListCover.h"

#include "ClickLabel.h"
#include "Icons.h"

#include <QVBoxLayout>

SendListCover::SendListCover(QWidget *parent) : QFrame(parent)
{
    setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);

    auto *text =
        new QLabel(QStringLiteral("Sending sequences is not possible with the currently selected "
                                  "communication mode (Receive Only). Click here to"));
    text->setObjectName(QStringLiteral("lblSendSequence"));
    text->setWordWrap(true);
    text->setMinimumWidth(1); // else a narrow list would cut it instead of wrapping it
    text->setAlignment(Qt::AlignLeft | Qt::AlignTop); // a low one cuts its end
    text->setToolTip(text->text());
    auto *link = new ClickLabel(QStringLiteral("change communication mode"));
    link->setObjectName(QStringLiteral("lblClickChangeComm"));
    link->MakeLink();
    auto *image = new ClickLabel;
    image->setObjectName(QStringLiteral("imgClickOptions"));
    image->setPixmap(Icons::Named("properties").pixmap(24, 24));
    image->setAccessibleName(QStringLiteral("Options"));
    image->setCursor(Qt::PointingHandCursor);
    for (ClickLabel *label : {link, image})
        connect(label, &ClickLabel::Clicked, this, &SendListCover::OptionsClicked);

    auto *row = new QHBoxLayout;
    row->addWidget(link);
    row->addWidget(image);
    row->addStretch();
    auto *column = new QVBoxLayout(this);
    column->addWidget(text);
    column->addLayout(row);
    column->addStretch();
}
