// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortDoctor.h"

#include <QFutureWatcher>
#include <QPlainTextEdit>
#include <QTimer>

#include <memory>

/// Shows what is to be thought of a device or of the address of a port. It is found out in threads
/// that may outlive the pane: a path on a dead network may hold them for long.
class DevicePane final : public QPlainTextEdit
{
    Q_OBJECT

  public:
    explicit DevicePane(std::shared_ptr<const PortFinder> finder);

    /// Reads what is known, and opens nothing, once no other device has been named for a moment.
    void Show(const QString &device);
    /// Opens what is shown, sets it, as "9600,N,8,1", reads it back and closes it. Nothing happens
    /// while MayTry says no.
    void Try(const QString &settings);
    bool MayTry() const { return !m_device.isEmpty() && !m_trial.isRunning(); }

    QSize sizeHint() const override;

  Q_SIGNALS:
    /// MayTry may say something else.
    void TrialChanged();

  private:
    using Watcher = QFutureWatcher<DoctorReport>;

    void Examine(Watcher &watcher, Examination examination, const QString &settings);
    void ShowReport(const Watcher &watcher);

    std::shared_ptr<const PortFinder> m_finder;
    QString m_device;
    QTimer m_pause; ///< between a device that is named and the reading
    Watcher m_facts;
    Watcher m_trial;
};
