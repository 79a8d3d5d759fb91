// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmFind.h"

#include "ByteLook.h"
#include "DialogPage.h"
#include "EditModeOptions.h"
#include "MdSequenceEdition.h"
#include "NamedButton.h"
#include "SQEditSequence.h"

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTabBar>
#include <QVBoxLayout>

namespace
{

/// Left edges of the chosen panel and of the others, in pixels: 210 and -20,000 twips.
constexpr int PanelLeft = 14;
constexpr int OutOfSight = -1333;
/// Around the tabs and between their body and the panels, in pixels.
constexpr int Margin = 8;

struct Page {
    const char *tab;
    const char *toolTip;
    const char *caption;
    const char *field;
    const char *accessibleName;
    const char *button;
};

constexpr std::array<Page, FindKindCount> Pages = {
    {{"Send sequence", "Find a send sequence",
      "Find the following send sequence in the communication window:", "ComboSend", "Send sequence",
      "cmdFindSendSequence"},
     {"Receive sequence", "Find a receive sequence",
      "Find the following receive sequence in the communication window:", "ComboReceive",
      "Receive sequence", "cmdFindReceiveSequence"},
     {"User defined sequence", "Find a defined sequence",
      "Find the following sequence:", "AXEditFind", "Sequence", "cmdFindDefinedSequence"}}};

QString Text(const char *latin)
{
    return QString::fromLatin1(latin);
}

/// Without an entry of that number none is chosen.
void Choose(QComboBox &combo, int index)
{
    combo.setCurrentIndex(index < combo.count() ? index : 0);
}

} // namespace

frmFind::frmFind(const FindParts &parts, QWidget *parent)
    : QDialog(parent),
      m_parts(parts),
      tbsFind(new QTabBar(this)),
      m_body(new QFrame(this)),
      ComboSend(new QComboBox(this)),
      ComboReceive(new QComboBox(this)),
      AXEditFind(new SQEditSequence(this)),
      m_keyNote(new QLabel(QStringLiteral("Alt+N searches; Enter types CR"), this))
{
    setObjectName(QStringLiteral("frmFind"));
    setWindowTitle(MdFind::Caption());
    MakeTabs();
    MakeComboPanel(FindKind::Send, ComboSend);
    MakeComboPanel(FindKind::Receive, ComboReceive);
    MakeDefinedPanel();
    SetLeastSize();
    Restore();
}

void frmFind::MakeTabs()
{
    m_body->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    m_body->lower();
    tbsFind->setObjectName(QStringLiteral("tbsFind"));
    tbsFind->setAccessibleName(QStringLiteral("Kind of sequence"));
    tbsFind->setDrawBase(false);
    tbsFind->setExpanding(false);
    tbsFind->setElideMode(Qt::ElideNone);
    for (const Page &page : Pages)
        tbsFind->setTabToolTip(tbsFind->addTab(Text(page.tab)), Text(page.toolTip));
}

/// What stands beside, if anything, is at the end of the caption's row.
QVBoxLayout *frmFind::MakePanel(FindKind kind, QWidget *field, QWidget *beside)
{
    const Page &page = Pages[size_t(kind)];
    auto *panel = new DialogPage(this);
    panel->setObjectName(QStringLiteral("picOptions_%1").arg(int(kind)));
    auto *caption = new QLabel(Text(page.caption));
    caption->setBuddy(field);
    field->setObjectName(Text(page.field));
    field->setAccessibleName(Text(page.accessibleName));
    picOptions[size_t(kind)] = panel;
    m_fields[size_t(kind)] = field;

    auto *column = new QVBoxLayout(panel);
    column->setContentsMargins(0, 0, 0, 0);
    auto *row = new QHBoxLayout;
    row->addWidget(caption);
    row->addStretch();
    if (beside)
        row->addWidget(beside);
    column->addLayout(row);
    return column;
}

void frmFind::MakeComboPanel(FindKind kind, QComboBox *combo)
{
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(30);
    QVBoxLayout *column = MakePanel(kind, combo);
    column->addWidget(combo);
    column->addStretch();
    MakeButtons(kind);
    QPushButton *button = FindButton(kind);
    button->setEnabled(false);
    connect(combo, &QComboBox::currentIndexChanged, button,
            [button](int index) { button->setEnabled(index > 0); });
}

void frmFind::MakeDefinedPanel()
{
    AXEditFind->setMinimumSize(400, 110);
    auto *modes = new EditModeOptions(*AXEditFind);
    m_keyNote->setObjectName(QStringLiteral("lblKeyNote"));
    QSizePolicy policy = m_keyNote->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    m_keyNote->setSizePolicy(policy);
    QVBoxLayout *column = MakePanel(FindKind::Defined, AXEditFind, m_keyNote);
    column->addWidget(AXEditFind, 1);
    column->addWidget(modes);
    MakeButtons(FindKind::Defined);
    connect(AXEditFind, &SQEditSequence::Changed, this, &frmFind::EnableDefined);
    connect(modes, &EditModeOptions::ModeChosen, this, &frmFind::ChooseMode);
    modes->Choose(m_parts.find.ShownView());
}

void frmFind::ChooseMode(Representation mode)
{
    m_parts.find.FindEditMode = mode;
    const bool ascii = mode == Representation::Ascii;
    m_keyNote->setVisible(ascii);
    AXEditFind->setAccessibleDescription(ascii ? m_keyNote->text() : QString());
}

void frmFind::MakeButtons(FindKind kind)
{
    QPushButton *find = NamedButton(Pages[size_t(kind)].button, "Find &Next");
    auto *cancel = new QPushButton(QStringLiteral("Cancel"));
    cancel->setObjectName(QStringLiteral("CmdCancel_%1").arg(int(kind)));
    m_findButtons[size_t(kind)] = find;

    auto *row = new QHBoxLayout;
    row->addStretch();
    row->addWidget(find);
    row->addWidget(cancel);
    static_cast<QVBoxLayout *>(picOptions[size_t(kind)]->layout())->addLayout(row);
    connect(find, &QPushButton::clicked, this, [this, kind] { FindNext(kind); });
    connect(cancel, &QPushButton::clicked, this, &frmFind::reject);
}

void frmFind::SetLeastSize()
{
    QSize panel;
    for (const QWidget *each : picOptions)
        panel = panel.expandedTo(each->minimumSizeHint());
    const QSize tabs = tbsFind->sizeHint();
    setMinimumSize(qMax(panel.width() + 2 * PanelLeft, tabs.width() + 2 * Margin),
                   tabs.height() + panel.height() + 4 * Margin);
    resize(minimumSize());
}

void frmFind::Restore()
{
    const MdFind &find = m_parts.find;
    const MdSequenceEdition &sequences = m_parts.sequences;
    for (QComboBox *combo : {ComboSend, ComboReceive})
        combo->addItem(QStringLiteral("---"));
    for (int i = 0; i < sequences.SendCount(); ++i)
        ComboSend->addItem(ByteLook::ToShapes(sequences.SendAt(i).Name));
    for (int i = 0; i < sequences.ReceiveCount(); ++i)
        ComboReceive->addItem(ByteLook::ToShapes(sequences.ReceiveAt(i).Name));
    Choose(*ComboSend, find.FindSendIndex);
    Choose(*ComboReceive, find.FindReceiveIndex);
    AXEditFind->SetSequence(find.FindDefinedSequence);
    AXEditFind->SelectBytes(0, find.FindDefinedSequence.size()); // typing replaces them
    EnableDefined();

    tbsFind->setCurrentIndex(int(find.FindTab));
    ChooseTab(tbsFind->currentIndex());
    connect(tbsFind, &QTabBar::currentChanged, this, &frmFind::ChooseTab);
}

/// The focus stays on the tabs if it is there; else it goes to the panel that comes.
void frmFind::ChooseTab(int tab)
{
    const bool byTabs = tbsFind->hasFocus();
    m_parts.find.FindTab = FindKind(tab);
    for (int i = 0; i < FindKindCount; ++i)
        picOptions[size_t(i)]->setEnabled(i == tab);
    PlacePanels();
    m_findButtons[size_t(tab)]->setDefault(true);
    if (!byTabs)
        m_fields[size_t(tab)]->setFocus();
}

void frmFind::PlacePanels()
{
    const int tabHeight = tbsFind->sizeHint().height();
    tbsFind->setGeometry(Margin, Margin, width() - 2 * Margin, tabHeight);
    const int top = Margin + tabHeight - 1;
    m_body->setGeometry(Margin, top, width() - 2 * Margin, height() - top - Margin);
    for (QWidget *panel : picOptions) {
        panel->setGeometry(panel->isEnabled() ? PanelLeft : OutOfSight, top + Margin,
                           width() - 2 * PanelLeft, height() - top - 3 * Margin);
    }
}

void frmFind::resizeEvent(QResizeEvent *)
{
    PlacePanels();
}

void frmFind::EnableDefined()
{
    FindButton(FindKind::Defined)->setEnabled(!AXEditFind->Sequence().isEmpty());
}

QByteArray frmFind::SequenceOf(FindKind kind) const
{
    if (kind == FindKind::Defined)
        return AXEditFind->Sequence();
    const QComboBox &combo = kind == FindKind::Send ? *ComboSend : *ComboReceive;
    return m_parts.find.SequenceAt(kind, combo.currentIndex()).value_or(QByteArray());
}

void frmFind::FindNext(FindKind kind)
{
    if (kind == FindKind::Defined)
        EnableDefined();
    if (m_parts.find.FindNext(kind, SequenceOf(kind)))
        StandBeside(m_parts.ShowHit());
}

void frmFind::StandBeside(const DialogPlace::Sight &sight)
{
    const QPoint place = DialogPlace::Beside(frameGeometry(), sight, screen()->availableGeometry());
    if (place != pos())
        move(place);
}

void frmFind::reject()
{
    m_parts.find.FindSendIndex = qint16(ComboSend->currentIndex());
    m_parts.find.FindReceiveIndex = qint16(ComboReceive->currentIndex());
    m_parts.find.FindDefinedSequence = AXEditFind->Sequence();
    QDialog::reject();
}
