// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "comm/PortDevices.h"
#include "options/PortListing.h"

#include <QDialog>
#include <QFutureWatcher>

#include <memory>

class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;

/// Lets the user choose the device of a COM number, from the ports of this machine or by typing a
/// path. The ports are looked for in a thread that may outlive the dialog.
class frmDevices final : public QDialog
{
    Q_OBJECT

  public:
    /// The meanings of all COM numbers, that of the chosen one among them.
    frmDevices(int comNumber, const QMap<int, PortDevices::Meaning> &meanings,
               std::shared_ptr<const PortFinder> finder, QWidget *parent = nullptr);

    /// Whether the user has chosen a device at all, or only looked.
    bool IsChosen() const;
    /// The chosen device; empty to leave the number to the system.
    QString Device() const;

  private:
    void MakeList();
    void MakeField(int comNumber, const PortDevices::Meaning &meaning);
    void MakeButtons();
    void Look();
    void ShowPorts();
    void Take(const QTreeWidgetItem &port);

    QMap<int, QString> m_numbers; ///< devices of all COM numbers
    std::shared_ptr<const PortFinder> m_finder;
    QFutureWatcher<QList<ListedPort>> m_watcher;
    QTreeWidget *m_list;
    QLabel *lblState;
    QLineEdit *txtDevice;
    QPushButton *cmdLookAgain;
};
