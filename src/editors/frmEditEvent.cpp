// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmEditEvent.h"

#include "ByteLook.h"
#include "CodePageEdit.h"
#include "DeletionEffects.h"
#include "IdleLook.h"
#include "MdSequenceEdition.h"
#include "ProjectLosses.h"
#include "QuietLine.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

frmEditEvent::frmEditEvent(const SequenceEditorParts &parts, QWidget *parent)
    : frmEditSequence({"frmEditEvent", "Edit Receive Sequence", "lblEventID", "txtEventName",
                       "1 - Name:", "AXEditEvent"},
                      parts, parent),
      ComboAnswer(new QComboBox(this)),
      TxtComment(new CodePageEdit(this)),
      m_commentNote(new QuietLine(*TxtComment, this)),
      ChkInsertCminEM(new QCheckBox(this))
{
    MakeAction();
    FillAnswers();
    ShowFirst();
}

void frmEditEvent::MakeAction()
{
    auto *tabs = new QTabBar;
    tabs->setObjectName(QStringLiteral("tbsEvent"));
    tabs->setExpanding(false);
    tabs->addTab(QStringLiteral("Answer"));
    tabs->addTab(QStringLiteral("Comment"));
    auto *pages = new QStackedWidget;
    int number = 0;
    for (QWidget *page : {MakeAnswerPage(), MakeCommentPage(), MakeMessagePage()}) {
        page->setObjectName(QStringLiteral("picOptions_%1").arg(number++));
        pages->addWidget(page);
    }
    // Without a name of its own it would be read with the frame's title.
    const auto showPage = [tabs, pages](int page) {
        pages->setCurrentIndex(page);
        pages->setAccessibleName(tabs->tabText(page));
    };
    showPage(0);
    connect(tabs, &QTabBar::currentChanged, pages, showPage);

    auto *frame = new QGroupBox(QStringLiteral("3 - Action"));
    auto *column = new QVBoxLayout(frame);
    column->addWidget(tabs);
    column->addWidget(pages);
    FurtherFields()->addWidget(frame);
}

QWidget *frmEditEvent::MakeAnswerPage()
{
    auto *caption = new QLabel(QStringLiteral("Send out the following sequence:"));
    caption->setObjectName(QStringLiteral("labAnswerWithSequence"));
    caption->setBuddy(ComboAnswer);
    ComboAnswer->setObjectName(QStringLiteral("ComboAnswer"));
    ComboAnswer->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    ComboAnswer->setMinimumContentsLength(30);
    auto *impossible =
        new QLabel(QStringLiteral("Sending answers is not possible with the currently selected "
                                  "communication mode (Receive Only)."));
    impossible->setObjectName(QStringLiteral("labSendAnswerNotPossible"));
    impossible->setWordWrap(true);

    auto *page = new QWidget;
    auto *column = new QVBoxLayout(page);
    for (QWidget *widget : {static_cast<QWidget *>(caption), static_cast<QWidget *>(ComboAnswer),
                            static_cast<QWidget *>(impossible)})
        column->addWidget(widget);
    column->addStretch();

    const bool possible = Parts().answersPossible;
    caption->setVisible(possible);
    ComboAnswer->setVisible(possible);
    impossible->setVisible(!possible);
    connect(ComboAnswer, &QComboBox::currentIndexChanged, this, &frmEditEvent::NoteChange);
    return page;
}

QWidget *frmEditEvent::MakeCommentPage()
{
    auto *caption =
        new QLabel(QStringLiteral("Insert the following comment into the communication window:"));
    caption->setBuddy(TxtComment);
    TxtComment->setObjectName(QStringLiteral("TxtComment"));
    TxtComment->setAccessibleName(QStringLiteral("Comment"));
    m_commentNote->setObjectName(QStringLiteral("TxtCommentNote"));
    ChkInsertCminEM->setObjectName(QStringLiteral("ChkInsertCminEM"));
    ChkInsertCminEM->setText(QStringLiteral("Additonally insert the comment into the log file"));
    LookIdle(*ChkInsertCminEM,
             QStringLiteral("A log that is written always holds the comments; this box only shows "
                            "what the project file says."));

    auto *page = new QWidget;
    auto *column = new QVBoxLayout(page);
    for (QWidget *widget :
         {static_cast<QWidget *>(caption), static_cast<QWidget *>(TxtComment),
          static_cast<QWidget *>(m_commentNote), static_cast<QWidget *>(ChkInsertCminEM)})
        column->addWidget(widget);
    column->addStretch();
    connect(TxtComment, &QLineEdit::textChanged, this, &frmEditEvent::NoteChange);
    return page;
}

/// No tab leads to it, and its text is kept nowhere.
QWidget *frmEditEvent::MakeMessagePage()
{
    auto *page = new QWidget;
    auto *column = new QVBoxLayout(page);
    auto *caption = new QLabel(QStringLiteral("Add the following text in the event memory window "
                                              "when this receive sequence appears:"));
    caption->setWordWrap(true);
    auto *text = new QLineEdit;
    text->setObjectName(QStringLiteral("TxtMsgBox"));
    column->addWidget(caption);
    column->addWidget(text);
    return page;
}

/// Entry k stands for Answer k, the send sequence at index k - 1.
void frmEditEvent::FillAnswers()
{
    ComboAnswer->addItem(QStringLiteral("No Answer"));
    for (int i = 0; i < Parts().sequences.SendCount(); ++i) {
        ComboAnswer->addItem(QStringLiteral("( %1 ) - ").arg(i) +
                             ByteLook::ToShapes(Parts().sequences.SendAt(i).Name));
    }
}

int frmEditEvent::CurrentIndex() const
{
    return Parts().sequences.CurrentReceiveIndex;
}

void frmEditEvent::SetCurrentIndex(int index)
{
    Parts().sequences.CurrentReceiveIndex = index;
}

int frmEditEvent::Count() const
{
    return Parts().sequences.ReceiveCount();
}

void frmEditEvent::ShowFields(int index)
{
    const ReceiveSequence record = Stored(index);
    ShowNameAndSequence(record.Name, record.Sequence);
    const bool listed = record.Answer >= 0 && record.Answer < ComboAnswer->count();
    ComboAnswer->setCurrentIndex(listed ? record.Answer : -1);
    TxtComment->SetText(record.Comment);
    ChkInsertCminEM->setChecked(record.CommentToLog != 0);
}

/// Behind the last record there may be what is left of another project.
ReceiveSequence frmEditEvent::Stored(int index) const
{
    return index < Count() ? Parts().sequences.ReceiveAt(index) : ReceiveSequence{};
}

/// The record as the fields are. CommentToLog is only shown here, and an answer that the list does
/// not show stays as it is.
ReceiveSequence frmEditEvent::Changed() const
{
    ReceiveSequence record = Stored(CurrentIndex());
    record.Name = Name();
    record.Sequence = Sequence();
    record.Comment = TxtComment->Text();
    if (ComboAnswer->currentIndex() >= 0)
        record.Answer = qint16(ComboAnswer->currentIndex());
    return record;
}

void frmEditEvent::StoreFields(int index)
{
    ReceiveSequence record = Changed();
    record.EditorTexts = EditorTexts();
    Parts().sequences.StoreReceive(index, record);
    Parts().sequences.RefreshAnswerName(index);
}

void frmEditEvent::DeleteCurrent()
{
    Parts().sequences.DeleteReceiveSequence();
}

QString frmEditEvent::NameNote() const
{
    return ProjectLosses::OfName(Changed());
}

QString frmEditEvent::EmptyNote() const
{
    return QStringLiteral("Without bytes, this sequence is one byte 0 once the saved project is "
                          "opened again, and is then found at every byte 0 received.");
}

QString frmEditEvent::DeletionNote(const DeletionEffects &effects) const
{
    return effects.OnActive();
}

void frmEditEvent::ShowNotes()
{
    frmEditSequence::ShowNotes();
    m_commentNote->Say(ProjectLosses::OfComment(Changed()));
}
