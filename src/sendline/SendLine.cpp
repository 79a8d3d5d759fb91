// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SendLine.h"

#include "ChecksumChoice.h"
#include "MdSendLine.h"
#include "NamedButton.h"
#include "RepeatChoice.h"
#include "RepeatText.h"
#include "Representation.h"
#include "SQEditSequence.h"
#include "SendLineSettings.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMargins>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace
{

constexpr int CountMilliseconds = 250;
/// What is shown of bytes that are repeated or appended.
constexpr qsizetype MostShownBytes = 12;
constexpr QMargins Margins(6, 2, 6, 0);
/// Of what is typed; more can be scrolled.
constexpr qsizetype MostRows = 4;

QString ShownBytes(const QByteArray &bytes)
{
    const QString text =
        QString::fromLatin1(Common_Function::SeqToHexText(bytes.left(MostShownBytes)));
    return bytes.size() > MostShownBytes ? text + QStringLiteral(" ...") : text;
}

QStringList FixedCaptions()
{
    QStringList captions;
    for (const SendAppendix::Fixed &fixed : SendAppendix::FixedOnes)
        captions << QString::fromLatin1(fixed.caption);
    return captions;
}

} // namespace

SendLine::SendLine(MdSendLine &line, QWidget *parent)
    : QWidget(parent),
      m_line(line),
      cboForm(new QComboBox),
      txtLine(new SQEditSequence),
      cmdSend(NamedButton("cmdSend", "Send")),
      cmdKeep(NamedButton("cmdKeep", "&Keep...")),
      lblWhy(new QLabel),
      m_appendix(new ChecksumChoice(FixedCaptions())),
      lblAppended(new QLabel),
      m_plan(new RepeatChoice),
      cmdRepeat(NamedButton("cmdRepeat", "&Repeat")),
      lblRepeat(new QLabel)
{
    setObjectName(QStringLiteral("SendLine"));
    setFocusProxy(txtLine);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(Margins);
    column->setSpacing(Margins.top());
    lblWhy->setObjectName(QStringLiteral("lblWhy"));
    lblWhy->setWordWrap(true);
    column->addWidget(lblWhy);
    const std::array<void (SendLine::*)(QHBoxLayout &), 3> rows = {
        &SendLine::MakeEntry, &SendLine::MakeAppendix, &SendLine::MakeRepeat};
    for (const auto make : rows) {
        auto *row = new QHBoxLayout;
        (this->*make)(*row);
        column->addLayout(row);
    }
    Connect();
    Refresh();
}

void SendLine::MakeEntry(QHBoxLayout &row)
{
    cboForm->setObjectName(QStringLiteral("cboForm"));
    cboForm->setAccessibleName(QStringLiteral("Representation"));
    for (const RepresentationRow &form : RepresentationRows)
        cboForm->addItem(QString::fromLatin1(form.caption));
    const Representation form = RepresentationOf(m_line.Settings().Form, Representation::Ascii);
    cboForm->setCurrentIndex(int(form));
    txtLine->setObjectName(QStringLiteral("txtLine"));
    txtLine->setAccessibleName(QStringLiteral("Bytes to send"));
    txtLine->setAccessibleDescription(
        QStringLiteral("Enter sends, Up and Down fetch what was sent before"));
    txtLine->SetEditMode(RowOf(form).editMode);
    FitEntry();
    txtLine->installEventFilter(this);
    cmdSend->setToolTip(QStringLiteral("Send this (Enter)"));
    cmdKeep->setToolTip(QStringLiteral("Make a send sequence of this"));
    row.addWidget(cboForm, 0, Qt::AlignTop);
    row.addWidget(txtLine, 1);
    row.addWidget(cmdSend, 0, Qt::AlignTop);
    row.addWidget(cmdKeep, 0, Qt::AlignTop);
}

void SendLine::MakeAppendix(QHBoxLayout &row)
{
    const SendAppendix appendix = m_line.Appendix();
    if (appendix.checksum)
        m_appendix->SetRule(appendix.checksum);
    else
        m_appendix->SetOther(appendix.fixed);
    lblAppended->setObjectName(QStringLiteral("lblAppended"));
    row.addWidget(new QLabel(QStringLiteral("Append")));
    row.addWidget(m_appendix);
    row.addWidget(lblAppended, 1);
}

void SendLine::MakeRepeat(QHBoxLayout &row)
{
    m_plan->SetPlan({m_line.Settings().EveryMilliseconds, m_line.Settings().Count});
    cmdRepeat->setCheckable(true);
    lblRepeat->setObjectName(QStringLiteral("lblRepeat"));
    row.addWidget(m_plan);
    row.addWidget(cmdRepeat);
    row.addWidget(lblRepeat, 1);
}

void SendLine::Connect()
{
    connect(cboForm, &QComboBox::currentIndexChanged, this, [this](int form) {
        m_line.Settings().Form = form;
        txtLine->SetEditMode(RowOf(Representation(form)).editMode);
        FitEntry();
    });
    connect(txtLine, &SQEditSequence::Changed, this, &SendLine::FitEntry);
    connect(txtLine, &SQEditSequence::Changed, this, &SendLine::Refresh);
    connect(cmdSend, &QPushButton::clicked, this, &SendLine::Send);
    connect(cmdKeep, &QPushButton::clicked, this, &SendLine::Keep);
    connect(m_appendix, &ChecksumChoice::Changed, this, &SendLine::StoreAppendix);
    connect(m_plan, &RepeatChoice::Changed, this, &SendLine::StorePlan);
    connect(cmdRepeat, &QPushButton::clicked, this, &SendLine::Repeat);
    connect(&m_line, &MdSendLine::Changed, this, &SendLine::Refresh);
    connect(&m_counting, &QTimer::timeout, this, &SendLine::ShowRepeat);
}

/// As many rows as it needs.
void SendLine::FitEntry()
{
    const qsizetype rows = std::min(txtLine->Layout().RowCount(), MostRows);
    txtLine->setFixedHeight(txtLine->SizeOf(1, int(rows)).height());
}

// --- Hands --------------------------------------------------------------------------------------

bool SendLine::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        FitEntry();
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto &key = *static_cast<QKeyEvent *>(event);
    if ((key.modifiers() & ~Qt::KeyboardModifiers(Qt::KeypadModifier)) != Qt::NoModifier)
        return false;
    if (key.key() == Qt::Key_Escape) {
        Q_EMIT Left();
        return true;
    }
    if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
        if (!key.isAutoRepeat())
            Send();
        return true;
    }
    return Fetch(key.key());
}

/// Up in the first row and Down in the last one; in others they move the caret.
bool SendLine::Fetch(int key)
{
    const SequenceLayout &layout = txtLine->Layout();
    const qsizetype row = layout.RowOf(txtLine->Editing().Caret().byte);
    std::optional<QByteArray> fetched;
    if (key == Qt::Key_Up && row == 0)
        fetched = m_line.History().Earlier(Typed());
    else if (key == Qt::Key_Down && row == layout.RowCount() - 1)
        fetched = m_line.History().Later();
    if (fetched)
        txtLine->Replace(*fetched);
    return fetched.has_value();
}

/// What was sent makes room for the next; Up fetches it.
void SendLine::Send()
{
    if (m_line.Send(Typed()))
        txtLine->Replace({});
}

void SendLine::Repeat()
{
    if (m_line.Repeating())
        m_line.EndRepeat();
    else
        m_line.Repeat(Typed());
    Refresh();
}

void SendLine::Keep()
{
    Q_EMIT KeepRequested(m_line.Telegram(Typed().isEmpty() ? m_line.History().Newest() : Typed()));
}

void SendLine::StoreAppendix()
{
    SendAppendix appendix;
    appendix.checksum = m_appendix->Rule();
    if (!appendix.checksum)
        appendix.fixed = m_appendix->Other();
    m_line.SetAppendix(appendix);
    Refresh();
}

void SendLine::StorePlan()
{
    const RepeatPlan plan = m_plan->Plan();
    m_line.Settings().EveryMilliseconds = qint32(plan.milliseconds);
    m_line.Settings().Count = qint32(plan.count);
}

// --- Telling ------------------------------------------------------------------------------------

QByteArray SendLine::Typed() const
{
    return txtLine->Sequence();
}

void SendLine::Refresh()
{
    const QString why = m_line.WhyClosed();
    lblWhy->setText(why);
    lblWhy->setVisible(!why.isEmpty());
    txtLine->setEnabled(why.isEmpty());
    const QByteArray typed = Typed();
    const QString fault = typed.isEmpty() ? QString() : m_line.Appendix().WhyNone(typed);
    lblAppended->setText(fault.isEmpty() ? ShownBytes(m_line.Appendix().Of(typed)) : fault);
    const bool sends = why.isEmpty() && !m_line.Telegram(typed).isEmpty();
    cmdSend->setEnabled(sends);
    cmdRepeat->setEnabled(sends || m_line.Repeating());
    cmdKeep->setEnabled(fault.isEmpty() && !(typed + m_line.History().Newest()).isEmpty());
    ShowRepeat();
}

void SendLine::ShowRepeat()
{
    const std::optional<RepeatState> repeat = m_line.Repeating();
    cmdRepeat->setChecked(repeat.has_value());
    cmdRepeat->setText(repeat ? QStringLiteral("Stop &Repeating") : QStringLiteral("&Repeat"));
    lblRepeat->setText(repeat ? ShownBytes(repeat->telegram.bytes) + u' ' + RepeatText(*repeat)
                              : QString());
    if (!repeat)
        m_counting.stop();
    else if (!m_counting.isActive())
        m_counting.start(CountMilliseconds);
}

/// The options may have changed while another window stood in front.
void SendLine::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange)
        Refresh();
    else if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        FitEntry();
}

void SendLine::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    Refresh();
}

void SendLine::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous()) // else it is only minimised
        m_line.EndRepeat();
}
