// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmLineStatus.h"

#include "LineStatusGroup.h"
#include "NamedButton.h"
#include "ScrollPage.h"
#include "UserPrompts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPromise>
#include <QVBoxLayout>

#include <thread>
#include <utility>

frmLineStatus::frmLineStatus(LineStatusParts parts, QWidget *parent)
    : QDialog(parent), m_parts(std::move(parts))
{
    setObjectName(QStringLiteral("frmLineStatus"));
    setWindowTitle(QStringLiteral("Line Status"));
    auto *ports = new QWidget;
    auto *row = new QHBoxLayout(ports);
    row->setContentsMargins(0, 0, 0, 0);
    for (int channel = 0; channel < int(m_groups.size()); ++channel) {
        auto *group = new LineStatusGroup(channel);
        connect(group, &LineStatusGroup::SwitchWanted, this,
                [this, channel](OwnLine line, bool on) { Switch(channel, line, on); });
        row->addWidget(group);
        m_groups[size_t(channel)] = group;
    }
    QPushButton *cmdClose = NamedButton("cmdClose", "Close");
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    auto *lblPriority = new QLabel(QStringLiteral("Priority: ") + m_parts.priority);
    lblPriority->setObjectName(QStringLiteral("lblPriority"));
    lblPriority->setToolTip(
        QStringLiteral("How much before other programs the system serves the ports"));
    auto *foot = new QHBoxLayout;
    foot->addWidget(lblPriority);
    foot->addStretch();
    foot->addWidget(cmdClose);
    auto *column = new QVBoxLayout(this);
    column->addWidget(new ScrollPage(ports));
    column->addLayout(foot);

    m_clock.start();
    m_timer.setInterval(RefreshMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &frmLineStatus::Refresh);
    connect(&m_watcher, &QFutureWatcherBase::finished, this, &frmLineStatus::TakeIdentities);
    Refresh();
}

void frmLineStatus::showEvent(QShowEvent *event)
{
    m_identified.clear(); // devices may have come and gone
    Refresh();
    m_timer.start();
    QDialog::showEvent(event);
}

void frmLineStatus::hideEvent(QHideEvent *event)
{
    m_timer.stop();
    QDialog::hideEvent(event);
}

void frmLineStatus::Refresh()
{
    const QList<LineStatus> lines = m_parts.source.Lines();
    QStringList names, devices;
    for (qsizetype channel = 0; channel < qsizetype(m_groups.size()); ++channel) {
        LineStatusGroup &group = *m_groups[size_t(channel)];
        const bool used = channel < lines.size();
        if (used) {
            group.Show(lines[channel], m_clock.elapsed());
            names << lines[channel].name;
            devices << lines[channel].name << lines[channel].device;
        }
        if (group.isHidden() == used) {
            group.setVisible(used);
            QTimer::singleShot(0, this, &QWidget::adjustSize); // when the layouts know
        }
    }
    if (std::exchange(m_identified, devices) != devices)
        Identify(names);
}

/// The thread keeps what it needs; the watcher forgets it when the window goes.
void frmLineStatus::Identify(const QStringList &names)
{
    const auto promise = std::make_shared<QPromise<QList<PortIdentity>>>();
    m_watcher.setFuture(promise->future());
    std::thread([promise, names, finder = m_parts.finder, canonical = m_parts.canonicalName] {
        promise->start();
        promise->addResult(IdentitiesOf(names, *finder, canonical));
        promise->finish();
    }).detach();
}

void frmLineStatus::TakeIdentities()
{
    const QList<PortIdentity> identities = m_watcher.result();
    for (qsizetype channel = 0; channel < identities.size(); ++channel)
        m_groups[size_t(channel)]->Identify(identities[channel]);
    Refresh();
}

void frmLineStatus::Switch(int channel, OwnLine line, bool on)
{
    const QString port = m_groups[size_t(channel)]->title();
    const Result switched = m_parts.source.Switch(channel, line, on);
    Refresh();
    if (!switched.Failed())
        return;
    const QString name = line == OwnLine::RTS ? QStringLiteral("RTS") : QStringLiteral("DTR");
    m_parts.prompts.ShowNotice(
        port + u' ' + name,
        ExclamationMessage(QStringLiteral("The line %1 of %2 cannot be switched: %3")
                               .arg(name, port, switched.Cause())));
}
