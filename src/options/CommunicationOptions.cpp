// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommunicationOptions.h"

#include "OptionButtons.h"
#include "PortBox.h"
#include "frmDevices.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <utility>

namespace
{

constexpr std::array<const char *, 2> ModeOptions = {"Send/Receive", "Monitoring (Receive only)"};

/// A drop-down list that shows one of the value tables.
struct ValueList {
    const char *name;
    const char *caption;
    int count;
    QString (*text)(qint32 index);
    qint32 CommSettings::*value;
};

constexpr std::array<ValueList, 4> ValueLists = {
    {{"PicOp0SpeedCombo", "Baud Rate", SpeedCount, SpeedText, &CommSettings::CommSpeed},
     {"PicOp0ParityCombo", "Parity", ParityCount, ParityText, &CommSettings::CommParity},
     {"PicOp0DataBitsCombo", "Data Bits", DataBitsCount, DataBitsText, &CommSettings::CommDataBits},
     {"PicOp0StopBitsCombo", "Stop Bits", StopBitsCount, StopBitsText,
      &CommSettings::CommStopBits}}};

QLabel *MakeLabel(const char *name, const char *text)
{
    auto *label = new QLabel(QString::fromLatin1(text));
    label->setObjectName(QString::fromLatin1(name));
    return label;
}

/// What the command line has put in the place of the user's own settings; empty if nothing.
QString RunText(const CommOverrides &run)
{
    QStringList parts;
    if (run.mode)
        parts << ModeCaption(*run.mode);
    if (run.line)
        parts << LineSettingsText(*run.line);
    if (run.portA)
        parts << QStringLiteral("COM%1").arg(*run.portA);
    if (run.portB && run.mode != CommMode::SendReceive)
        parts << QStringLiteral("COM%1").arg(*run.portB);
    if (run.reopen)
        parts << QStringLiteral("devices that come back are reopened");
    return parts.isEmpty() ? QString()
                           : QStringLiteral("The command line has put in force for this run: %1. "
                                            "OK and Apply end that and put the settings above in "
                                            "force.")
                                 .arg(parts.join(QStringLiteral(", ")));
}

} // namespace

CommunicationOptions::CommunicationOptions(const PortDevices &devices,
                                           std::shared_ptr<const PortFinder> finder,
                                           UserPrompts &prompts)
    : m_devices(devices),
      m_finder(std::move(finder)),
      m_prompts(prompts),
      m_captionSendReceive(MakeLabel("PicOp0lblSelectPortA", "Send/Receive on COM port")),
      m_captionChannel1(
          MakeLabel("PicOp0lblSelectPortA_Intercept", "Receive channel 1 data from COM port")),
      m_captionChannel2(MakeLabel("PicOp0lblSelectPortB", "Receive channel 2 data from COM port")),
      m_portA(new PortBox("PicOp0PortANumber", "PicOp0DevicesA", "&Devices...")),
      m_portB(new PortBox("PicOp0PortBNumber", "PicOp0DevicesB", "D&evices...")),
      lblRun(MakeLabel("lblRun", ""))
{
    auto *column = new QVBoxLayout(this);
    MakeModes(column);
    MakePorts(column);
    MakeLists(column);
    lblRun->setWordWrap(true);
    column->addWidget(lblRun);
    column->addStretch();
}

void CommunicationOptions::MakeModes(QVBoxLayout *column)
{
    auto *frame = new QGroupBox(QStringLiteral("Communication Mode"));
    auto *options = new QVBoxLayout(frame);
    for (size_t i = 0; i < ModeOptions.size(); ++i) {
        auto *option = new QRadioButton(QString::fromLatin1(ModeOptions[i]));
        option->setObjectName(QStringLiteral("PicOp0OptionType_%1").arg(i));
        connect(option, &QRadioButton::toggled, this, [this, i](bool checked) {
            if (!checked)
                return;
            m_mode = qint32(i);
            ShowMode();
        });
        options->addWidget(option);
        m_modes[i] = option;
    }
    column->addWidget(frame);
}

void CommunicationOptions::MakePorts(QVBoxLayout *column)
{
    auto *grid = new QGridLayout;
    grid->setColumnStretch(1, 1);
    grid->addWidget(m_captionSendReceive, 0, 0);
    grid->addWidget(m_captionChannel1, 0, 0);
    grid->addWidget(m_portA, 0, 1);
    grid->addWidget(m_portA->Meaning(), 1, 0, 1, 2);
    grid->addWidget(m_captionChannel2, 2, 0);
    grid->addWidget(m_portB, 2, 1);
    grid->addWidget(m_portB->Meaning(), 3, 0, 1, 2);
    column->addLayout(grid);
    m_captionChannel2->setBuddy(m_portB->Edit());
    m_portB->SetAccessibleName(m_captionChannel2->text());
    // What comes and goes with the mode keeps its place, so that nothing below moves.
    for (QWidget *widget :
         {static_cast<QWidget *>(m_captionChannel1), static_cast<QWidget *>(m_portB),
          static_cast<QWidget *>(m_portB->Meaning())}) {
        QSizePolicy policy = widget->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        widget->setSizePolicy(policy);
    }
    for (PortBox *box : {m_portA, m_portB}) {
        box->MeaningOf = [this](int number) { return MeaningOf(number); };
        connect(box, &PortBox::DevicesRequested, this, [this, box] { ChooseDevice(*box); });
    }
}

void CommunicationOptions::MakeLists(QVBoxLayout *column)
{
    auto *frame = new QGroupBox(QStringLiteral("COM Port Settings"));
    auto *form = new QFormLayout(frame);
    for (size_t i = 0; i < ValueLists.size(); ++i) {
        const ValueList &list = ValueLists[i];
        auto *combo = new QComboBox;
        combo->setObjectName(QString::fromLatin1(list.name));
        combo->setAccessibleName(QString::fromLatin1(list.caption));
        for (int value = 0; value < list.count; ++value)
            combo->addItem(list.text(value));
        form->addRow(QString::fromLatin1(list.caption), combo);
        m_lists[i] = combo;
    }
    column->addWidget(frame);
}

void CommunicationOptions::Show(const OptionsValues &values)
{
    const CommSettings &stored = values.comm.stored;
    const bool twoChannels = ModeFromNumber(stored.CommType) != CommMode::SendReceive;
    m_modes[twoChannels ? 1 : 0]->setChecked(true);
    m_reopens = stored.CommReopen;
    m_deadSeconds = stored.CommDeadSeconds;
    m_mode = stored.CommType; // which may be one that neither option stands for
    ShowMode();
    m_assigned = values.devices;
    m_portA->Show(stored.CommPortA);
    m_portB->Show(stored.CommPortB);
    for (size_t i = 0; i < ValueLists.size(); ++i) {
        const qint32 index = stored.*ValueLists[i].value;
        m_lists[i]->setCurrentIndex(index >= 0 && index < ValueLists[i].count ? index : -1);
    }
    lblRun->setText(RunText(values.comm.run));
    lblRun->setVisible(!lblRun->text().isEmpty());
}

void CommunicationOptions::Store(OptionsValues &values) const
{
    CommSettings &stored = values.comm.stored;
    stored.CommType = m_mode;
    stored.CommPortA = m_portA->Number();
    stored.CommPortB = m_portB->Number();
    stored.CommReopen = m_reopens;
    stored.CommDeadSeconds = m_deadSeconds;
    for (size_t i = 0; i < ValueLists.size(); ++i) {
        if (m_lists[i]->currentIndex() >= 0)
            stored.*ValueLists[i].value = m_lists[i]->currentIndex();
    }
    values.comm.run = {};
    values.devices = m_assigned;
}

void CommunicationOptions::ShowMode()
{
    LeadTabToChosen(m_modes);
    const bool monitoring = m_modes[1]->isChecked();
    m_captionSendReceive->setVisible(!monitoring);
    m_captionChannel1->setVisible(monitoring);
    m_captionChannel2->setVisible(monitoring);
    m_portB->setVisible(monitoring);
    m_portB->Meaning()->setVisible(monitoring);
    QLabel *label = monitoring ? m_captionChannel1 : m_captionSendReceive;
    label->setBuddy(m_portA->Edit());
    m_portA->SetAccessibleName(label->text());
}

std::optional<OptionsFault> CommunicationOptions::FaultyField(const QWidget *typing)
{
    for (PortBox *box : {m_portA, m_portB}) {
        if (box->IsFaulty() && !box->isHidden() && box->Edit() != typing) {
            return OptionsFault{box->Edit(), QStringLiteral("Illegal value. Please correct."),
                                [box] { box->Correct(); }};
        }
    }
    return std::nullopt;
}

std::optional<OptionsFault> CommunicationOptions::Conflict()
{
    if (!m_modes[1]->isChecked() || m_portA->Number() != m_portB->Number())
        return std::nullopt;
    return OptionsFault{m_portB->Edit(),
                        QStringLiteral("You cannot use the same COM port for channel 1 and "
                                       "channel 2. Please correct")};
}

PortDevices::Meaning CommunicationOptions::MeaningOf(int comNumber) const
{
    const auto assigned = m_assigned.find(comNumber);
    return assigned == m_assigned.end() ? m_devices.MeaningOf(comNumber)
                                        : m_devices.MeaningOfEntry(comNumber, *assigned);
}

void CommunicationOptions::ChooseDevice(const PortBox &box)
{
    if (!FieldsAreRight())
        return;
    const int number = box.Number();
    QMap<int, PortDevices::Meaning> meanings;
    for (int each = LeastPortNumber; each <= MostPortNumber; ++each)
        meanings[each] = MeaningOf(each);
    OptionsValues shown;
    Store(shown);
    frmDevices devices({number, meanings, m_devices.MeaningOfEntry(number, QString()), m_reopens,
                        m_deadSeconds, SettingsString(shown.comm.stored)},
                       m_finder, m_prompts, window());
    const bool accepted = devices.exec() == QDialog::Accepted;
    box.Edit()->setFocus(); // on the button, Enter would open the devices again
    if (!accepted)
        return;
    m_reopens = devices.Reopens();
    m_deadSeconds = devices.DeadSeconds();
    if (!devices.IsChosen())
        return;
    m_assigned[number] = devices.Device();
    m_portA->UpdateMeaning();
    m_portB->UpdateMeaning();
}
