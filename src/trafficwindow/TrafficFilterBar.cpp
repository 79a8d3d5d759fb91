// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficFilterBar.h"

#include "BarMargins.h"
#include "ByteField.h"
#include "CodePage1252.h"
#include "NamedButton.h"
#include "TrafficMarks.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QScopedValueRollback>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace
{

constexpr int LettersOfAName = 12;
/// Stands for any length, behind all that a row can have.
constexpr int AnyLength = int(Telegram::MostBytes) + 1;

/// Entries of cboDirection.
enum Direction { All, First, Second, Events };

QLabel *Caption(const char *text, QWidget *field)
{
    auto *caption = new QLabel(QString::fromLatin1(text));
    caption->setBuddy(field);
    return caption;
}

} // namespace

TrafficFilterBar::TrafficFilterBar(std::function<QStringList()> names, QWidget *parent)
    : QWidget(parent),
      m_names(std::move(names)),
      cboDirection(new QComboBox),
      cboFilterName(new QComboBox),
      txtLeast(new QSpinBox),
      txtMost(new QSpinBox),
      cboContains(new QComboBox),
      txtContains(new ByteField),
      cmdMarks(new QToolButton),
      cmdFilterOff(NamedButton("cmdFilterOff", "Show A&ll")),
      lblCount(new QLabel),
      lblRefusal(new QLabel)
{
    setObjectName(QStringLiteral("barFilter"));
    setAccessibleName(QStringLiteral("Filter"));
    MakeFields();
    MakeContains();
    MakeMarks();
    LayOut();
    m_pause.setSingleShot(true);
    m_pause.setInterval(PauseMilliseconds);
    connect(&m_pause, &QTimer::timeout, this, &TrafficFilterBar::Apply);
    hide();
}

void TrafficFilterBar::MakeFields()
{
    cboDirection->setObjectName(QStringLiteral("cboDirection"));
    cboDirection->setAccessibleName(QStringLiteral("Direction"));
    cboDirection->addItems({QStringLiteral("All"), QStringLiteral("Sent"),
                            QStringLiteral("Received"), QStringLiteral("Events")});
    cboFilterName->setObjectName(QStringLiteral("cboFilterName"));
    cboFilterName->setAccessibleName(QStringLiteral("Sequence"));
    cboFilterName->setEditable(true);
    cboFilterName->setInsertPolicy(QComboBox::NoInsert);
    cboFilterName->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    cboFilterName->setMinimumContentsLength(LettersOfAName);
    cboFilterName->lineEdit()->setPlaceholderText(QStringLiteral("any"));
    txtLeast->setObjectName(QStringLiteral("txtLeast"));
    txtLeast->setAccessibleName(QStringLiteral("Least length"));
    txtLeast->setRange(0, AnyLength - 1);
    txtMost->setObjectName(QStringLiteral("txtMost"));
    txtMost->setAccessibleName(QStringLiteral("Greatest length"));
    txtMost->setRange(-1, AnyLength - 1);
    txtMost->setSpecialValueText(QStringLiteral("any"));
    txtMost->setValue(-1);
    connect(cboDirection, &QComboBox::currentIndexChanged, this, &TrafficFilterBar::Apply);
    connect(cboFilterName, &QComboBox::activated, this, &TrafficFilterBar::Apply);
    connect(cboFilterName, &QComboBox::editTextChanged, this, &TrafficFilterBar::ApplyAfterPause);
    for (QSpinBox *length : {txtLeast, txtMost})
        connect(length, &QSpinBox::valueChanged, this, &TrafficFilterBar::ApplyAfterPause);
}

void TrafficFilterBar::MakeContains()
{
    cboContains->setObjectName(QStringLiteral("cboContains"));
    cboContains->setAccessibleName(QStringLiteral("Form of the bytes"));
    for (const Representation form : AllRepresentations)
        cboContains->addItem(QString::fromLatin1(RowOf(form).caption));
    txtContains->setObjectName(QStringLiteral("txtContains"));
    txtContains->setAccessibleName(QStringLiteral("Bytes that the rows contain"));
    txtContains->setPlaceholderText(QStringLiteral("any bytes"));
    lblRefusal->setObjectName(QStringLiteral("lblRefusal"));
    lblRefusal->setTextFormat(Qt::PlainText);
    connect(cboContains, &QComboBox::currentIndexChanged, this, [this](int form) {
        txtContains->SetForm(Representation(form));
        ApplyAfterPause();
    });
    connect(txtContains, &QLineEdit::textChanged, this, &TrafficFilterBar::ApplyAfterPause);
}

void TrafficFilterBar::MakeMarks()
{
    cmdMarks->setObjectName(QStringLiteral("cmdMarks"));
    cmdMarks->setPopupMode(QToolButton::InstantPopup);
    cmdMarks->setFocusPolicy(Qt::StrongFocus);
    auto *menu = new QMenu(cmdMarks);
    for (const TrafficMark &mark : TrafficMarks) {
        QAction *tick = menu->addAction(QString::fromLatin1(mark.caption));
        tick->setCheckable(true);
        connect(tick, &QAction::toggled, this, &TrafficFilterBar::Apply);
        m_marks << tick;
    }
    cmdMarks->setMenu(menu);
    ShowMarks();
}

void TrafficFilterBar::LayOut()
{
    lblCount->setObjectName(QStringLiteral("lblCount"));
    cmdFilterOff->setAutoDefault(true); // Enter presses it while it has the focus
    cmdFilterOff->setToolTip(QStringLiteral("Takes the filter off (Esc)"));
    connect(cmdFilterOff, &QPushButton::clicked, this, &TrafficFilterBar::TakeOff);
    auto *top = new QHBoxLayout;
    auto *bottom = new QHBoxLayout;
    const QList<QWidget *> above = {Caption("&Direction:", cboDirection),
                                    cboDirection,
                                    Caption("Se&quence:", cboFilterName),
                                    cboFilterName,
                                    Caption("Len&gth:", txtLeast),
                                    txtLeast,
                                    Caption("to", txtMost),
                                    txtMost,
                                    cmdMarks};
    for (QWidget *widget : above)
        top->addWidget(widget, widget == cboFilterName ? 1 : 0);
    bottom->addWidget(Caption("Cont&ains:", txtContains));
    bottom->addWidget(cboContains);
    bottom->addWidget(txtContains, 1);
    bottom->addWidget(lblRefusal);
    bottom->addWidget(lblCount);
    bottom->addWidget(cmdFilterOff);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(BarMargins);
    column->addLayout(top);
    column->addLayout(bottom);
}

void TrafficFilterBar::Open()
{
    {
        const QScopedValueRollback<bool> showing(m_showing, true);
        const QString typed = cboFilterName->currentText();
        cboFilterName->clear();
        cboFilterName->addItems(m_names());
        cboFilterName->setEditText(typed);
    }
    show();
    cboDirection->setFocus(Qt::ShortcutFocusReason);
}

void TrafficFilterBar::SetDirections(const QStringList &captions)
{
    cboDirection->setItemText(First, captions.value(0));
    cboDirection->setItemText(Second, captions.value(1));
}

void TrafficFilterBar::ShowFilter(const TelegramFilter &filter)
{
    const QScopedValueRollback<bool> showing(m_showing, true);
    const auto [first, second] = filter.directions;
    cboDirection->setCurrentIndex(first == second ? (first ? All : Events)
                                                  : (first ? First : Second));
    cboFilterName->setEditText(CodePage1252::ToUnicode(filter.names.value(0)));
    txtLeast->setValue(int(filter.leastLength));
    txtMost->setValue(filter.mostLength >= AnyLength ? -1 : int(filter.mostLength));
    if (txtContains->Bytes() != filter.contains || !txtContains->Refusal().isEmpty())
        txtContains->SetBytes(filter.contains);
    for (qsizetype i = 0; i < m_marks.size(); ++i)
        m_marks[i]->setChecked(filter.marks.testFlag(TrafficMarks[size_t(i)].mark));
    m_pause.stop();
    m_filter = filter;
    ShowMarks();
    lblRefusal->clear();
}

void TrafficFilterBar::ShowCount(qint64 shown, qint64 all)
{
    const QLocale locale;
    lblCount->setText(
        QStringLiteral("%1 of %2 rows").arg(locale.toString(shown), locale.toString(all)));
}

TelegramFilter TrafficFilterBar::Read() const
{
    TelegramFilter filter;
    const int direction = cboDirection->currentIndex();
    filter.directions = {direction == All || direction == First,
                         direction == All || direction == Second};
    filter.events = direction == All || direction == Events;
    if (const QByteArray name = CodePage1252::FromUnicode(cboFilterName->currentText()).bytes;
        !name.isEmpty())
        filter.names << name;
    filter.leastLength = txtLeast->value();
    if (txtMost->value() >= 0)
        filter.mostLength = txtMost->value();
    filter.contains = txtContains->Bytes();
    for (qsizetype i = 0; i < m_marks.size(); ++i)
        filter.marks.setFlag(TrafficMarks[size_t(i)].mark, m_marks[i]->isChecked());
    return filter;
}

/// As long as the bytes cannot be read the filter stays as it is.
void TrafficFilterBar::Apply()
{
    m_pause.stop();
    if (m_showing)
        return;
    ShowMarks();
    const QString refusal = txtContains->Refusal();
    lblRefusal->setText(refusal);
    txtContains->setAccessibleDescription(refusal);
    if (!refusal.isEmpty())
        return;
    const TelegramFilter filter = Read();
    if (std::exchange(m_filter, filter) != filter)
        Q_EMIT Changed(filter);
}

void TrafficFilterBar::ApplyAfterPause()
{
    if (!m_showing)
        m_pause.start();
}

void TrafficFilterBar::TakeOff()
{
    const bool was = !m_filter.IsEmpty();
    ShowFilter({});
    hide();
    if (was)
        Q_EMIT Changed(m_filter);
    Q_EMIT Closed();
}

void TrafficFilterBar::ShowMarks()
{
    const auto ticked = std::count_if(m_marks.begin(), m_marks.end(),
                                      [](QAction *tick) { return tick->isChecked(); });
    cmdMarks->setText(ticked == 0 ? QStringLiteral("Any marks")
                                  : QStringLiteral("%1 of the marks").arg(ticked));
}

void TrafficFilterBar::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape)
        TakeOff();
    else if (enter)
        Apply();
    else
        QWidget::keyPressEvent(event);
}
