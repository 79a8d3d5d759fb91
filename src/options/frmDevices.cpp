// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmDevices.h"

#include "DevicePane.h"
#include "NamedButton.h"
#include "PlainText.h"
#include "PlainToolTip.h"
#include "RemoteAddress.h"
#include "UserPrompts.h"
#include "frmNetworkPort.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPromise>
#include <QPushButton>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <thread>
#include <utility>

namespace
{

/// Columns of the list.
enum Column { NumberColumn, DeviceColumn, DescriptionColumn, NameColumn };

/// What a row assigns: the name that lasts, if the port has one.
constexpr int AssignedName = Qt::UserRole;

QString NumbersText(const QList<int> &numbers)
{
    QStringList names;
    for (const int number : numbers)
        names << QStringLiteral("COM%1").arg(number);
    return names.join(QStringLiteral(", "));
}

QString StateText(const QList<ListedPort> &ports)
{
    const auto found = std::count_if(ports.begin(), ports.end(),
                                     [](const ListedPort &listed) { return listed.found; });
    const QString text = found == 0   ? QStringLiteral("No ports were found")
                         : found == 1 ? QStringLiteral("1 port was found")
                                      : QStringLiteral("%1 ports were found").arg(found);
    const auto assigned = ports.size() - found;
    return assigned == 0   ? text + u'.'
           : assigned == 1 ? text + QStringLiteral(", 1 more is assigned.")
                           : text + QStringLiteral(", %1 more are assigned.").arg(assigned);
}

} // namespace

frmDevices::frmDevices(const ChosenPort &port, std::shared_ptr<const PortFinder> finder,
                       UserPrompts &prompts, QWidget *parent)
    : QDialog(parent),
      m_port(port),
      m_finder(std::move(finder)),
      m_prompts(prompts),
      m_list(new QTreeWidget),
      lblState(new QLabel),
      txtDevice(new QLineEdit),
      m_reopen(new QCheckBox(QStringLiteral("&Reopen a device that comes back"))),
      m_deadSeconds(port.deadSeconds),
      lblMeaning(new QLabel),
      m_details(new DevicePane(m_finder)),
      cmdLookAgain(NamedButton("cmdLookAgain", "&Look Again")),
      cmdTryIt(NamedButton("cmdTryIt", "&Try It"))
{
    setObjectName(QStringLiteral("frmDevices"));
    setWindowTitle(QStringLiteral("Device of COM%1").arg(port.number));
    new QVBoxLayout(this);
    MakeList();
    MakeField(port);
    MakeNotes(port);
    MakeButtons();
    // So that most stable names are seen whole.
    resize(QSize(880, 520).boundedTo(screen()->availableSize() - QSize(8, 40)));
    connect(&m_watcher, &QFutureWatcherBase::finished, this, &frmDevices::ShowPorts);
    Look();
}

void frmDevices::MakeList()
{
    m_list->setObjectName(QStringLiteral("lstDevices"));
    m_list->setAccessibleName(QStringLiteral("Ports of this machine"));
    m_list->setHeaderLabels({QStringLiteral("Number"), QStringLiteral("Device"),
                             QStringLiteral("Description"), QStringLiteral("Stable Name")});
    m_list->setRootIsDecorated(false);
    m_list->setAllColumnsShowFocus(true);
    m_list->setMinimumSize(480, 100);
    lblState->setObjectName(QStringLiteral("lblState"));
    layout()->addWidget(m_list);
    layout()->addWidget(lblState);
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, [this] {
        if (!m_list->selectedItems().isEmpty())
            Take(*m_list->selectedItems().first());
    });
    // The row that is chosen already counts again, too, whatever was typed meanwhile.
    connect(m_list, &QTreeWidget::itemClicked, this,
            [this](const QTreeWidgetItem *port) { Take(*port); });
    connect(m_list, &QTreeWidget::itemDoubleClicked, this, &QDialog::accept);
}

void frmDevices::MakeField(const ChosenPort &port)
{
    const int comNumber = port.number;
    const PortDevices::Meaning meaning = port.meanings[comNumber];
    const PortDevices::Meaning &ofSystem = port.ofSystem;
    auto *caption = new QLabel(QStringLiteral("&Device of COM%1").arg(comNumber));
    caption->setBuddy(txtDevice);
    txtDevice->setObjectName(QStringLiteral("txtDevice"));
    txtDevice->setAccessibleName(QStringLiteral("Device of COM%1").arg(comNumber));
    txtDevice->setPlaceholderText(ofSystem.device);
    if (meaning.source != PortDevices::Source::SystemName)
        txtDevice->setText(meaning.device);
    auto *row = new QHBoxLayout;
    row->addWidget(caption);
    row->addWidget(txtDevice);
    static_cast<QVBoxLayout *>(layout())->addLayout(row);
    connect(txtDevice, &QLineEdit::textChanged, this, &frmDevices::ShowMeaning);
}

void frmDevices::MakeNotes(const ChosenPort &port)
{
    const int comNumber = port.number;
    const QString &ofSystem = port.ofSystem.device;
    auto *note = new QLabel(
        QStringLiteral("Choose a port, or type the path of a device or the address of a "
                       "network port. While the field is empty, ") +
        (ofSystem.isEmpty() ? QStringLiteral("COM%1 has no device.").arg(comNumber)
                            : QStringLiteral("COM%1 is ").arg(comNumber) + ofSystem + u'.'));
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    auto *column = static_cast<QVBoxLayout *>(layout());
    column->addWidget(note);
    lblMeaning->setObjectName(QStringLiteral("lblMeaning"));
    lblMeaning->setTextFormat(Qt::PlainText);
    lblMeaning->setWordWrap(true);
    column->addWidget(lblMeaning);
    column->addWidget(m_details);
    m_reopen->setObjectName(QStringLiteral("chkReopen"));
    m_reopen->setToolTip(QStringLiteral("Holds for all ports. Communication then goes on while a "
                                        "device is unplugged."));
    m_reopen->setChecked(port.reopens);
    column->addWidget(m_reopen);
}

void frmDevices::MakeButtons()
{
    QPushButton *cmdOK = NamedButton("cmdOK", "OK");
    QPushButton *cmdCancel = NamedButton("cmdCancel", "Cancel");
    cmdOK->setDefault(true);
    auto *row = new QHBoxLayout;
    QPushButton *cmdBrowse = NamedButton("cmdBrowse", "&Browse...");
    QPushButton *cmdNetworkPort = NamedButton("cmdNetworkPort", "&Network Port...");
    cmdTryIt->setToolTip(
        QStringLiteral("Open the port, set it, read it back and close it, unless it is in use"));
    for (QPushButton *button : {cmdLookAgain, cmdBrowse, cmdNetworkPort, cmdTryIt})
        row->addWidget(button);
    row->addStretch();
    row->addWidget(cmdOK);
    row->addWidget(cmdCancel);
    static_cast<QVBoxLayout *>(layout())->addLayout(row);
    connect(cmdLookAgain, &QPushButton::clicked, this, &frmDevices::Look);
    connect(cmdBrowse, &QPushButton::clicked, this, &frmDevices::Browse);
    connect(cmdTryIt, &QPushButton::clicked, this, [this] { m_details->Try(m_port.settings); });
    connect(m_details, &DevicePane::TrialChanged, this,
            [this] { cmdTryIt->setEnabled(m_details->MayTry()); });
    connect(cmdNetworkPort, &QPushButton::clicked, this, &frmDevices::ChooseNetworkPort);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

/// The thread keeps what it needs; the watcher forgets it when the dialog goes, and the program
/// does not wait for it either: a path on a dead network may hold it for long.
void frmDevices::Look()
{
    ShowMeaning();
    cmdLookAgain->setEnabled(false);
    m_list->clear();
    lblState->setText(QStringLiteral("Looking for ports ..."));
    const auto promise = std::make_shared<QPromise<QList<ListedPort>>>();
    m_watcher.setFuture(promise->future());
    std::thread([promise, finder = m_finder, meanings = m_port.meanings] {
        promise->start();
        promise->addResult(ListPortsAndAssigned(*finder, meanings));
        promise->finish();
    }).detach();
}

void frmDevices::ShowPorts()
{
    const QList<ListedPort> ports = m_watcher.result();
    for (const ListedPort &listed : ports) {
        const FoundPort &port = listed.port;
        auto *item = new QTreeWidgetItem(m_list);
        item->setText(NumberColumn, NumbersText(listed.numbers));
        item->setText(DeviceColumn, PlainText(port.device));
        item->setText(DescriptionColumn, PlainText(port.description));
        item->setText(NameColumn, PlainText(port.stableName));
        item->setToolTip(NameColumn, PlainToolTip(port.stableName));
        item->setData(0, AssignedName, port.stableName.isEmpty() ? port.device : port.stableName);
    }
    for (int column = NumberColumn; column <= NameColumn; ++column)
        m_list->resizeColumnToContents(column);
    lblState->setText(StateText(ports));
    cmdLookAgain->setEnabled(true);
}

void frmDevices::Take(const QTreeWidgetItem &port)
{
    Enter(port.data(0, AssignedName).toString());
}

void frmDevices::Enter(const QString &device)
{
    txtDevice->setText(device);
    txtDevice->setModified(true);
}

void frmDevices::Browse()
{
    const QString known = Device().isEmpty() ? m_port.ofSystem.device : Device();
    const QString folder = known.startsWith(u'/') ? QFileInfo(known).path() : QString();
    const QString chosen =
        m_prompts.ChooseFile({.purpose = FileDialogRequest::Purpose::Device,
                              .dialog = QStringLiteral("dlgDevice"),
                              .title = windowTitle(),
                              .filter = QStringLiteral("All Devices|*"),
                              .folder = folder.isEmpty() ? QStringLiteral("/dev") : folder});
    if (!chosen.isEmpty())
        Enter(chosen);
}

void frmDevices::ChooseNetworkPort()
{
    frmNetworkPort port(ParseRemoteAddress(Device()).address, m_deadSeconds, m_finder, this);
    if (port.exec() != QDialog::Accepted)
        return;
    m_deadSeconds = port.DeadSeconds();
    Enter(port.Address());
}

/// Of an address what it means, or what is wrong with it; of all, what is known.
void frmDevices::ShowMeaning()
{
    const bool remote = IsRemoteAddress(Device());
    const ParsedAddress parsed = ParseRemoteAddress(Device());
    lblMeaning->setVisible(remote);
    lblMeaning->setText(!remote                 ? QString()
                        : parsed.state.Failed() ? parsed.state.Cause()
                                                : RemoteMeaningText(parsed.address));
    m_details->Show(Device().isEmpty() ? m_port.ofSystem.device : Device());
}

bool frmDevices::IsChosen() const
{
    return txtDevice->isModified();
}

QString frmDevices::Device() const
{
    return txtDevice->text().trimmed();
}

bool frmDevices::Reopens() const
{
    return m_reopen->isChecked();
}
