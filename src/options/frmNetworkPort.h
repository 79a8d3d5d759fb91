// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortFinder.h"
#include "RemoteAddress.h"

#include <QDialog>
#include <QFutureWatcher>

#include <array>
#include <memory>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

/// Lets the user put together the address of a port on another machine, and try it. A try goes on
/// in a thread that may outlive the dialog.
class frmNetworkPort final : public QDialog
{
    Q_OBJECT

  public:
    /// Begins with an address; with that of a serial port server if there is none.
    frmNetworkPort(const RemoteAddress &address, int deadSeconds,
                   std::shared_ptr<const PortFinder> finder, QWidget *parent = nullptr);

    /// As typed; it may be wrong while the dialog is open.
    QString Address() const;
    /// How long a connection may give no sign of life; it holds for all network ports.
    int DeadSeconds() const;

  private:
    void MakeFields(const RemoteAddress &address, int deadSeconds);
    void MakeLimit(int deadSeconds, QFormLayout &form);
    void MakeFiles(const RemoteAddress &address, QFormLayout &form);
    void MakeButtons();
    RemoteAddress Typed() const;
    void Update();
    void Try();
    void ShowTrial();

    std::shared_ptr<const PortFinder> m_finder;
    QFutureWatcher<QString> m_watcher;
    QComboBox *m_kind;
    QLineEdit *txtHost;
    QLineEdit *txtPort;
    QCheckBox *m_listens;
    QSpinBox *spnDeadSeconds;
    std::array<QLineEdit *, 3> m_files{}; ///< authority, certificate, key
    QLabel *lblMeaning;
    QPushButton *cmdTest;
    QPushButton *cmdOK;
};
