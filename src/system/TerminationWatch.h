// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

/// Tells when the system asks the program to end: SIGTERM, SIGINT or SIGHUP. One instance, made
/// before anything that such a signal should find alive.
class TerminationWatch final : public QObject
{
    Q_OBJECT

  public:
    TerminationWatch();
    ~TerminationWatch() override;

    /// From now on a reader that has gone makes a write fail, and does not end the program.
    static void OutliveReaders();

  Q_SIGNALS:
    void Terminating();

  private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};
