// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmNetworkPort.h"

#include "NamedButton.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPromise>
#include <QPushButton>
#include <QSpinBox>

#include <thread>
#include <utility>

namespace
{

struct KindRow {
    const char *caption;
    RemoteAddress::Kind kind;
    bool secure;
};

constexpr std::array Kinds = {
    KindRow{"Serial port server (RFC 2217)", RemoteAddress::Kind::SerialServer, false},
    KindRow{"Serial port server over TLS", RemoteAddress::Kind::SerialServer, true},
    KindRow{"Bytes alone (TCP)", RemoteAddress::Kind::Bytes, false},
    KindRow{"Bytes alone over TLS", RemoteAddress::Kind::Bytes, true}};

struct FileRow {
    const char *name;
    const char *caption;
    const char *emptyText;
    QString RemoteAddress::*file;
};

constexpr std::array Files = {
    FileRow{"txtAuthority", "&Authority", "the system's own", &RemoteAddress::authority},
    FileRow{"txtCertificate", "&Certificate", "none", &RemoteAddress::certificate},
    FileRow{"txtKey", "&Key", "none", &RemoteAddress::key}};

} // namespace

frmNetworkPort::frmNetworkPort(const RemoteAddress &address, int deadSeconds,
                               std::shared_ptr<const PortFinder> finder, QWidget *parent)
    : QDialog(parent),
      m_finder(std::move(finder)),
      m_kind(new QComboBox),
      txtHost(new QLineEdit),
      txtPort(new QLineEdit),
      m_listens(new QCheckBox(QStringLiteral("&Listen only"))),
      spnDeadSeconds(new QSpinBox),
      lblMeaning(new QLabel),
      cmdTest(NamedButton("cmdTest", "&Test")),
      cmdOK(NamedButton("cmdOK", "OK"))
{
    setObjectName(QStringLiteral("frmNetworkPort"));
    setWindowTitle(QStringLiteral("Network Port"));
    new QVBoxLayout(this);
    MakeFields(address, deadSeconds);
    MakeButtons();
    connect(&m_watcher, &QFutureWatcherBase::finished, this, &frmNetworkPort::ShowTrial);
    Update();
}

void frmNetworkPort::MakeFields(const RemoteAddress &address, int deadSeconds)
{
    auto *form = new QFormLayout;
    m_kind->setObjectName(QStringLiteral("lstKind"));
    for (const KindRow &row : Kinds) {
        m_kind->addItem(QString::fromLatin1(row.caption));
        if (row.kind == address.kind && row.secure == address.secure)
            m_kind->setCurrentIndex(m_kind->count() - 1);
    }
    txtHost->setObjectName(QStringLiteral("txtHost"));
    txtHost->setText(address.host);
    txtPort->setObjectName(QStringLiteral("txtPort"));
    txtPort->setText(address.port == 0 ? QString() : QString::number(address.port));
    m_listens->setObjectName(QStringLiteral("chkListen"));
    m_listens->setChecked(address.listens);
    form->addRow(QStringLiteral("K&ind"), m_kind);
    form->addRow(QStringLiteral("&Host"), txtHost);
    form->addRow(QStringLiteral("&Port"), txtPort);
    form->addRow(QString(), m_listens);
    MakeFiles(address, *form);
    MakeLimit(deadSeconds, *form);
    auto *column = static_cast<QVBoxLayout *>(layout());
    column->addLayout(form);
    lblMeaning->setObjectName(QStringLiteral("lblMeaning"));
    lblMeaning->setTextFormat(Qt::PlainText);
    lblMeaning->setWordWrap(true);
    constexpr int Letters = 56;
    constexpr int Rows = 3;
    lblMeaning->setMinimumSize(Letters * lblMeaning->fontMetrics().averageCharWidth(),
                               Rows * lblMeaning->fontMetrics().lineSpacing());
    column->addWidget(lblMeaning);
    connect(m_kind, &QComboBox::currentIndexChanged, this, &frmNetworkPort::Update);
    connect(m_listens, &QCheckBox::toggled, this, &frmNetworkPort::Update);
    for (const QLineEdit *field : {txtHost, txtPort, m_files[0], m_files[1], m_files[2]})
        connect(field, &QLineEdit::textChanged, this, &frmNetworkPort::Update);
}

void frmNetworkPort::MakeFiles(const RemoteAddress &address, QFormLayout &form)
{
    for (size_t i = 0; i < Files.size(); ++i) {
        m_files[i] = new QLineEdit(address.*Files[i].file);
        m_files[i]->setObjectName(QString::fromLatin1(Files[i].name));
        m_files[i]->setPlaceholderText(QString::fromLatin1(Files[i].emptyText));
        form.addRow(QString::fromLatin1(Files[i].caption), m_files[i]);
    }
}

/// Below the least, too few questions could go unanswered before.
void frmNetworkPort::MakeLimit(int deadSeconds, QFormLayout &form)
{
    constexpr int Least = 4;
    constexpr int Most = 3600;
    spnDeadSeconds->setObjectName(QStringLiteral("spnDeadSeconds"));
    spnDeadSeconds->setRange(Least, Most);
    spnDeadSeconds->setSuffix(QStringLiteral(" s without a sign of life"));
    spnDeadSeconds->setToolTip(QStringLiteral("Holds for all network ports. What asks for signs of "
                                              "life is no data on the line."));
    spnDeadSeconds->setValue(deadSeconds);
    form.addRow(QStringLiteral("Lo&st after"), spnDeadSeconds);
}

void frmNetworkPort::MakeButtons()
{
    QPushButton *cmdCancel = NamedButton("cmdCancel", "Cancel");
    cmdOK->setDefault(true);
    cmdTest->setToolTip(
        QStringLiteral("Connect and listen, without a setting, a signal or a byte"));
    auto *row = new QHBoxLayout;
    row->addWidget(cmdTest);
    row->addStretch();
    row->addWidget(cmdOK);
    row->addWidget(cmdCancel);
    static_cast<QVBoxLayout *>(layout())->addLayout(row);
    connect(cmdTest, &QPushButton::clicked, this, &frmNetworkPort::Try);
    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

RemoteAddress frmNetworkPort::Typed() const
{
    const KindRow &kind = Kinds[size_t(m_kind->currentIndex())];
    RemoteAddress address;
    address.kind = kind.kind;
    address.secure = kind.secure;
    address.host = txtHost->text().trimmed();
    address.port = txtPort->text().trimmed().toUShort();
    address.listens = m_listens->isChecked();
    for (size_t i = 0; i < Files.size() && kind.secure; ++i)
        address.*Files[i].file = m_files[i]->text().trimmed();
    return address;
}

QString frmNetworkPort::Address() const
{
    return RemoteAddressText(Typed());
}

int frmNetworkPort::DeadSeconds() const
{
    return spnDeadSeconds->value();
}

/// A wrong address cannot be left with.
void frmNetworkPort::Update()
{
    const bool typed = !txtHost->text().trimmed().isEmpty() && !txtPort->text().trimmed().isEmpty();
    const ParsedAddress parsed = ParseRemoteAddress(Address());
    cmdOK->setEnabled(!parsed.state.Failed());
    cmdTest->setEnabled(!parsed.state.Failed() && !m_watcher.isRunning());
    for (QLineEdit *file : m_files)
        file->setEnabled(Typed().secure);
    lblMeaning->setText(!typed                  ? QStringLiteral("Type the host and the port.")
                        : parsed.state.Failed() ? parsed.state.Cause()
                                                : RemoteMeaningText(parsed.address));
}

void frmNetworkPort::Try()
{
    const auto promise = std::make_shared<QPromise<QString>>();
    promise->start();
    m_watcher.setFuture(promise->future());
    Update();
    lblMeaning->setText(QStringLiteral("Connecting to %1 ...").arg(PeerText(Typed())));
    std::thread([promise, finder = m_finder, address = Address()] {
        promise->addResult(finder->TryRemote(address));
        promise->finish();
    }).detach();
}

void frmNetworkPort::ShowTrial()
{
    Update();
    lblMeaning->setText(m_watcher.result());
}
