// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "UserPrompts.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <memory>

class QLabel;
class QProgressBar;
class QPushButton;

/// The box of work on another thread: how far it is, and Cancel. From the first moment on no other
/// window takes commands; seen is the box only when the work takes its time.
class WorkBox final : public QDialog
{
    Q_OBJECT

  public:
    /// Shorter work shows no box.
    static constexpr std::chrono::milliseconds Unseen{400};
    /// The end of the program waits no longer for work that it has cancelled.
    static constexpr std::chrono::seconds MostTimeToEnd{5};

    WorkBox(const QString &what, QWidget *owner);

    /// Returns when the work is done; false if the program ended and the work did not, which then
    /// goes on.
    bool Do(const UserPrompts::Work &work);

    /// Cancels; the box goes when the work has ended.
    void reject() override;

  protected:
    /// The user's close cancels; any other is the end of the program.
    void closeEvent(QCloseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void Refresh();

    std::shared_ptr<WorkProgress> m_progress; ///< shared with the thread, which may outlive the box
    QLabel *lblWhat;
    QProgressBar *m_done;
    QPushButton *cmdCancel;
    QElapsedTimer m_since;
    QTimer m_refresh;
    QEventLoop m_loop;
};
