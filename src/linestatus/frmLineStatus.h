// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineStatus.h"
#include "PortIdentity.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QFutureWatcher>
#include <QTimer>

#include <array>
#include <memory>

class LineStatusGroup;
class UserPrompts;

/// What the window works with; prompts live longer than it.
struct LineStatusParts {
    LineStatusSource source;
    std::shared_ptr<const PortFinder> finder;
    QString (*canonicalName)(const QString &name);
    UserPrompts &prompts;
    QString priority; ///< of the thread that serves the lines
};

/// The window "Line Status": what the ports of the mode in force are, how their lines stand and
/// what has been counted, looked at anew several times a second while it is seen. Not modal.
/// Devices are looked for in a thread that may outlive the window.
class frmLineStatus final : public QDialog
{
    Q_OBJECT

  public:
    explicit frmLineStatus(LineStatusParts parts, QWidget *parent = nullptr);

    /// Between two looks.
    static constexpr int RefreshMilliseconds = 300;

  protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

  private:
    void Refresh();
    void Identify(const QStringList &names);
    void TakeIdentities();
    void Switch(int channel, OwnLine line, bool on);

    LineStatusParts m_parts;
    std::array<LineStatusGroup *, 2> m_groups{}; ///< by channel
    QTimer m_timer;
    QElapsedTimer m_clock;
    QStringList m_identified; ///< names and devices that have been looked for
    QFutureWatcher<QList<PortIdentity>> m_watcher;
};
