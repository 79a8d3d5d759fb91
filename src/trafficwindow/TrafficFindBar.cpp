// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficFindBar.h"

#include "BarMargins.h"
#include "ByteField.h"
#include "CodePage1252.h"
#include "NamedButton.h"
#include "TrafficMarks.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QStackedWidget>

#include <array>
#include <utility>

namespace
{

constexpr int LettersOfAField = 16;

enum class Field { Bytes, Name, Mark };

/// A kind of thing that can be looked for, and the field in which it is told.
struct FindKind {
    const char *caption;
    const char *toolTip;
    Field field = Field::Bytes;
    Representation form = Representation::Ascii;
    bool anyCase = false;
};

constexpr std::array FindKinds = {
    FindKind{"Text", "Characters; letters in either case, as in the views", Field::Bytes,
             Representation::Ascii, true},
    FindKind{"ASCII", "Bytes as characters, exactly as typed"},
    FindKind{"HEX", "Bytes such as 0D 0A", Field::Bytes, Representation::Hex},
    FindKind{"Decimal", "Bytes such as 013 010", Field::Bytes, Representation::Decimal},
    FindKind{"Binary", "Bytes such as 00001101", Field::Bytes, Representation::Binary},
    FindKind{"Sequence", "Part of the name of a sequence that was sent or detected", Field::Name},
    FindKind{"Mark", "What happened to the bytes", Field::Mark},
};

QString Text(const char *latin)
{
    return QString::fromLatin1(latin);
}

/// Enter presses it while it has the focus, and belongs to the fields else.
QPushButton *BarButton(const char *name, const char *caption, const char *toolTip)
{
    QPushButton *button = LetNarrow(NamedButton(name, caption));
    button->setAutoDefault(true);
    button->setToolTip(Text(toolTip));
    return button;
}

} // namespace

TrafficFindBar::TrafficFindBar(std::function<QStringList()> names, QWidget *parent)
    : QWidget(parent),
      m_names(std::move(names)),
      cboFindKind(new QComboBox),
      m_fields(new QStackedWidget),
      txtFind(new ByteField),
      cboFindName(new QComboBox),
      cboFindMark(new QComboBox),
      cmdNext(BarButton("cmdFindNext", "&Next", "The next one below the current row (Enter, F3)")),
      cmdPrevious(BarButton("cmdFindPrevious", "&Previous",
                            "The next one above the current row (Shift+Enter, Shift+F3)")),
      cmdWrap(BarButton("cmdFindWrap", "From the Bottom", "Looks on from the other end")),
      cmdGiveUp(BarButton("cmdFindGiveUp", "Cancel", "Stops looking (Esc)")),
      cmdCloseFind(BarButton("cmdCloseFind", "Close", "Closes this line (Esc)")),
      lblFind(new QLabel)
{
    setObjectName(QStringLiteral("barFind"));
    setAccessibleName(QStringLiteral("Find"));
    MakeFields();
    MakeButtons();
    LayOut();
    ChooseKind(0);
    hide();
}

void TrafficFindBar::MakeFields()
{
    cboFindKind->setObjectName(QStringLiteral("cboFindKind"));
    cboFindKind->setAccessibleName(QStringLiteral("Kind of thing to find"));
    for (const FindKind &kind : FindKinds) {
        cboFindKind->addItem(Text(kind.caption));
        cboFindKind->setItemData(cboFindKind->count() - 1, Text(kind.toolTip), Qt::ToolTipRole);
    }
    txtFind->setObjectName(QStringLiteral("txtFind"));
    cboFindName->setObjectName(QStringLiteral("cboFindName"));
    cboFindName->setEditable(true);
    cboFindName->setInsertPolicy(QComboBox::NoInsert);
    cboFindMark->setObjectName(QStringLiteral("cboFindMark"));
    for (const TrafficMark &mark : TrafficMarks)
        cboFindMark->addItem(Text(mark.caption));
    for (QComboBox *combo : {cboFindName, cboFindMark}) {
        combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        combo->setMinimumContentsLength(LettersOfAField);
    }
    for (QWidget *field : {static_cast<QWidget *>(txtFind), static_cast<QWidget *>(cboFindName),
                           static_cast<QWidget *>(cboFindMark)}) {
        field->setAccessibleName(QStringLiteral("What to find"));
        m_fields->addWidget(field); // in the order of Field
    }
    m_fields->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(cboFindKind, &QComboBox::currentIndexChanged, this, &TrafficFindBar::ChooseKind);
    connect(txtFind, &QLineEdit::textChanged, this, [this] { Say({}); });
}

void TrafficFindBar::MakeButtons()
{
    lblFind->setObjectName(QStringLiteral("lblFind"));
    lblFind->setTextFormat(Qt::PlainText);
    connect(cmdNext, &QPushButton::clicked, this, [this] { Q_EMIT Wanted(true); });
    connect(cmdPrevious, &QPushButton::clicked, this, [this] { Q_EMIT Wanted(false); });
    connect(cmdWrap, &QPushButton::clicked, this, [this] {
        txtFind->setFocus(); // the button goes
        Q_EMIT WantedFromEnd(m_forward);
    });
    connect(cmdGiveUp, &QPushButton::clicked, this, &TrafficFindBar::GivenUp);
    connect(cmdCloseFind, &QPushButton::clicked, this, &TrafficFindBar::Close);
}

void TrafficFindBar::LayOut()
{
    auto *caption = new QLabel(QStringLiteral("F&ind:"));
    caption->setBuddy(cboFindKind);
    auto *top = new QHBoxLayout;
    for (QWidget *widget : {static_cast<QWidget *>(caption), static_cast<QWidget *>(cboFindKind)})
        top->addWidget(widget);
    top->addWidget(m_fields, 1);
    for (QPushButton *button : {cmdNext, cmdPrevious})
        top->addWidget(button);
    top->addWidget(lblFind);
    for (QPushButton *button : {cmdWrap, cmdGiveUp, cmdCloseFind})
        top->addWidget(button);
    top->setContentsMargins(BarMargins);
    setLayout(top);
    Say({});
}

void TrafficFindBar::Open()
{
    const QString typed = cboFindName->currentText();
    cboFindName->clear();
    cboFindName->addItems(m_names());
    cboFindName->setEditText(typed);
    show();
    m_fields->currentWidget()->setFocus(Qt::ShortcutFocusReason);
    txtFind->selectAll();
}

void TrafficFindBar::ChooseKind(int kind)
{
    const FindKind &chosen = FindKinds[size_t(kind)];
    cboFindKind->setToolTip(Text(chosen.toolTip));
    m_fields->setCurrentIndex(int(chosen.field));
    if (chosen.field == Field::Bytes)
        txtFind->SetForm(chosen.form);
    Say({});
}

std::optional<TelegramSearch> TrafficFindBar::Search()
{
    const FindKind &kind = FindKinds[size_t(cboFindKind->currentIndex())];
    TelegramSearch search;
    if (kind.field == Field::Mark) {
        search.marks = TrafficMarks[size_t(cboFindMark->currentIndex())].mark;
    } else if (kind.field == Field::Name) {
        search.name = CodePage1252::FromUnicode(cboFindName->currentText()).bytes;
    } else if (const QString refusal = txtFind->Refusal(); !refusal.isEmpty()) {
        Say(refusal);
        return std::nullopt;
    } else {
        search.bytes = txtFind->Bytes();
        search.anyCase = kind.anyCase;
    }
    if (!search.IsEmpty())
        return search;
    Say(QStringLiteral("Say first what to find."));
    return std::nullopt;
}

void TrafficFindBar::ShowSearching()
{
    Say(QStringLiteral("Looking for it"));
    cmdGiveUp->show();
}

void TrafficFindBar::ShowFound()
{
    Say({});
}

void TrafficFindBar::ShowNotFound(bool forward, bool inAll)
{
    if (inAll)
        return Say(QStringLiteral("Not found"));
    m_forward = forward;
    cmdWrap->setText(forward ? QStringLiteral("From the Top") : QStringLiteral("From the Bottom"));
    Say(forward ? QStringLiteral("No more below") : QStringLiteral("No more above"), true);
}

void TrafficFindBar::ShowFailure(const QString &text)
{
    Say(text);
}

/// Told to assistive programs as the description of the field.
void TrafficFindBar::Say(const QString &text, bool canWrap)
{
    lblFind->setText(text);
    lblFind->setVisible(!text.isEmpty());
    cmdWrap->setVisible(canWrap);
    cmdGiveUp->hide();
    m_fields->currentWidget()->setAccessibleDescription(text);
}

void TrafficFindBar::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool escape = event->key() == Qt::Key_Escape;
    if (escape && cmdGiveUp->isVisible())
        Q_EMIT GivenUp();
    else if (escape)
        Close();
    else if (enter)
        Q_EMIT Wanted(!event->modifiers().testFlag(Qt::ShiftModifier));
    else
        QWidget::keyPressEvent(event);
}

void TrafficFindBar::Close()
{
    hide();
    Q_EMIT Closed();
}
