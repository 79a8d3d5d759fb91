// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortDevices.h"
#include "PortListing.h"

#include <QDialog>
#include <QFutureWatcher>

#include <memory>

class DevicePane;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class UserPrompts;

/// Lets the user choose the device of a COM number, from the ports of this machine and his own
/// assignments or by typing a path, and shows what is known of it. The ports are looked for in a
/// thread that may outlive the dialog.
class frmDevices final : public QDialog
{
    Q_OBJECT

  public:
    /// The COM number whose device is to be chosen.
    struct ChosenPort {
        int number;
        QMap<int, PortDevices::Meaning> meanings; ///< of all COM numbers
        PortDevices::Meaning ofSystem;            ///< while the user assigns nothing to it
        bool reopens = false;                     ///< see Reopens; it holds for all ports
        int deadSeconds = 10;                     ///< see DeadSeconds
        QString settings{};                       ///< that a trial asks for, as "9600,N,8,1"
    };

    frmDevices(const ChosenPort &port, std::shared_ptr<const PortFinder> finder,
               UserPrompts &prompts, QWidget *parent = nullptr);

    /// Whether the user has chosen a device at all, or only looked.
    bool IsChosen() const;
    /// The chosen device; empty to leave the number to the system.
    QString Device() const;
    /// Whether a device that went away is to be opened again when it is back.
    bool Reopens() const;
    /// After how long without a sign of life the connection of a network port is lost.
    int DeadSeconds() const { return m_deadSeconds; }

  private:
    void MakeList();
    void MakeField(const ChosenPort &port);
    void MakeNotes(const ChosenPort &port);
    void MakeButtons();
    void Look();
    void ShowPorts();
    void Take(const QTreeWidgetItem &port);
    void Enter(const QString &device);
    void Browse();
    void ChooseNetworkPort();
    void ShowMeaning();

    const ChosenPort m_port;
    std::shared_ptr<const PortFinder> m_finder;
    UserPrompts &m_prompts;
    QFutureWatcher<QList<ListedPort>> m_watcher;
    QTreeWidget *m_list;
    QLabel *lblState;
    QLineEdit *txtDevice;
    QCheckBox *m_reopen;
    int m_deadSeconds;
    QLabel *lblMeaning;
    DevicePane *m_details;
    QPushButton *cmdLookAgain;
    QPushButton *cmdTryIt;
};
