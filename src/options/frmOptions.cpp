// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmOptions.h"

#include "CommunicationOptions.h"
#include "DisplayOptions.h"
#include "LoggingOptions.h"
#include "NamedButton.h"
#include "ScrollPage.h"
#include "SequenceOptions.h"
#include "UserPrompts.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

namespace
{

constexpr std::array<const char *, 4> TabCaptions = {"Communication", "Display - 1", "Display - 2",
                                                     "Logging"};

} // namespace

frmOptions::frmOptions(const OptionsParts &parts, QWidget *parent)
    : QDialog(parent),
      m_parts(parts),
      m_values(parts.values),
      tbsOptions(new QTabBar),
      m_frame(new QStackedWidget),
      m_startAgain(new QCheckBox(QStringLiteral("&Start again"))),
      cmdCancel(NamedButton("cmdCancel", "Cancel"))
{
    setObjectName(QStringLiteral("frmOptions"));
    setWindowTitle(QStringLiteral("Options"));
    MakePages();
    MakeButtons();
    ShowValues();
    connect(qApp, &QApplication::focusChanged, &m_focusWatch,
            [this](QWidget *, QWidget *now) { NoteFocus(now); });
}

QLabel *frmOptions::MakeStoppedLine()
{
    auto *line = new QLabel(QStringLiteral("Communication was stopped by opening the options."));
    line->setObjectName(QStringLiteral("lblStopped"));
    line->setContentsMargins(0, 0, 0, 6);
    line->setVisible(m_parts.communicationStopped);
    if (m_parts.communicationStopped)
        setAccessibleDescription(line->text());
    return line;
}

void frmOptions::MakePages()
{
    auto *communication =
        new CommunicationOptions(m_parts.devices, m_parts.finder, m_parts.prompts);
    communication->FieldsAreRight = [this] { return FieldsAreRight(nullptr); };
    picOptions = {communication,
                  new DisplayOptions(m_parts.display, m_parts.prompts, m_parts.DisplayChosen),
                  new SequenceOptions, new LoggingOptions};
    tbsOptions->setObjectName(QStringLiteral("tbsOptions"));
    tbsOptions->setAccessibleName(QStringLiteral("Options"));
    tbsOptions->setExpanding(false);
    tbsOptions->setDrawBase(false);
    m_frame->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    for (size_t i = 0; i < picOptions.size(); ++i) {
        picOptions[i]->setObjectName(QStringLiteral("picOptions_%1").arg(i));
        m_frame->addWidget(picOptions[i]);
        tbsOptions->addTab(QString::fromLatin1(TabCaptions[i]));
    }
    connect(tbsOptions, &QTabBar::currentChanged, m_frame, &QStackedWidget::setCurrentIndex);
    auto *column = new QVBoxLayout(this);
    column->setSpacing(0);
    QLabel *stopped = MakeStoppedLine();
    column->addWidget(stopped);
    column->addWidget(tbsOptions);
    column->addWidget(new ScrollPage(m_frame, stopped));
}

void frmOptions::MakeButtons()
{
    QPushButton *cmdOK = NamedButton("cmdOK", "OK");
    QPushButton *cmdApply = NamedButton("cmdApply", "Apply");
    cmdOK->setDefault(true);
    m_startAgain->setObjectName(QStringLiteral("chkStartAgain"));
    m_startAgain->setToolTip(
        QStringLiteral("Start communication when this dialog closes, by Cancel as well as by OK"));
    m_startAgain->setVisible(m_parts.communicationStopped);
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 8, 0, 0);
    row->setSpacing(6);
    row->addWidget(m_startAgain);
    row->addStretch();
    for (QPushButton *button : {cmdOK, cmdCancel, cmdApply})
        row->addWidget(button);
    static_cast<QVBoxLayout *>(layout())->addLayout(row);
    connect(cmdOK, &QPushButton::clicked, this, &frmOptions::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdApply, &QPushButton::clicked, this, [this] {
        if (Confirm())
            ShowValues();
    });
}

void frmOptions::ShowValues()
{
    for (OptionsPage *page : picOptions)
        page->Show(m_values);
}

/// A field that was left is checked when the stroke that moved the focus has been dealt with: a
/// message box must not stand in the middle of it.
void frmOptions::NoteFocus(const QWidget *now)
{
    if (now && now->window() == this)
        QMetaObject::invokeMethod(this, &frmOptions::CheckLeftFields, Qt::QueuedConnection);
}

/// The way to Cancel is free.
void frmOptions::CheckLeftFields()
{
    if (!m_telling && isVisible() && focusWidget() != cmdCancel)
        FieldsAreRight(focusWidget());
}

/// Tells of the first field that may not be left as it stands, if there is one.
bool frmOptions::FieldsAreRight(const QWidget *typing)
{
    for (size_t i = 0; i < picOptions.size(); ++i) {
        if (const auto fault = picOptions[i]->FaultyField(typing)) {
            Tell(i, *fault);
            return false;
        }
    }
    return true;
}

/// Taking the focus from a button that is still held down also keeps it from being pressed.
void frmOptions::Tell(size_t page, const OptionsFault &fault)
{
    const QScopedValueRollback<bool> telling(m_telling, true);
    while (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    tbsOptions->setCurrentIndex(int(page));
    fault.field->setFocus();
    m_parts.prompts.ShowMessage(ExclamationMessage(fault.text));
    fault.mend();
}

bool frmOptions::MayConfirm()
{
    if (!FieldsAreRight(nullptr))
        return false;
    for (size_t i = 0; i < picOptions.size(); ++i) {
        if (const auto fault = picOptions[i]->Conflict()) {
            Tell(i, *fault);
            return false;
        }
    }
    return true;
}

bool frmOptions::Confirm()
{
    if (!MayConfirm())
        return false;
    for (const OptionsPage *page : picOptions)
        page->Store(m_values);
    m_parts.ValuesConfirmed(m_values);
    m_values.devices.clear();
    return true;
}

bool frmOptions::StartAgain() const
{
    return m_startAgain->isChecked();
}

void frmOptions::accept()
{
    if (Confirm())
        QDialog::accept();
}
