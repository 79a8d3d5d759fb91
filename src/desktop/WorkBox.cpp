// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "WorkBox.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QThread>
#include <QVBoxLayout>

WorkBox::WorkBox(const QString &what, QWidget *owner)
    : QDialog(owner),
      m_progress(std::make_shared<WorkProgress>()),
      lblWhat(new QLabel(what, this)),
      m_done(new QProgressBar(this))
{
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    cmdCancel = buttons->button(QDialogButtonBox::Cancel);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    lblWhat->setObjectName(QStringLiteral("lblWhat"));
    lblWhat->setTextFormat(Qt::PlainText);
    m_done->setObjectName(QStringLiteral("pbDone"));
    m_done->setAccessibleName(what);
    constexpr int Letters = 40;
    m_done->setMinimumWidth(Letters * m_done->fontMetrics().averageCharWidth());
    auto *column = new QVBoxLayout(this);
    column->addWidget(lblWhat);
    column->addWidget(m_done);
    column->addWidget(buttons);
    column->setSizeConstraint(QLayout::SetFixedSize);
    setWindowTitle(QStringLiteral("Serimonde"));
    setWindowModality(Qt::ApplicationModal);

    constexpr int RefreshEach = 50; // milliseconds
    m_refresh.setInterval(RefreshEach);
    connect(&m_refresh, &QTimer::timeout, this, &WorkBox::Refresh);
    connect(buttons, &QDialogButtonBox::rejected, this, &WorkBox::reject);
}

bool WorkBox::Do(const UserPrompts::Work &work)
{
    QThread *thread = QThread::create([work, progress = m_progress] { work(*progress); });
    connect(thread, &QThread::finished, &m_loop, &QEventLoop::quit);
    ShowUnseen();
    m_since.start();
    m_refresh.start();
    thread->start();
    m_loop.exec();
    m_refresh.stop();
    hide();
    const bool ended = thread->isFinished();
    if (ended)
        delete thread;
    return ended;
}

/// A modal dialog without a window on the screen: commands are blocked, and nothing flashes up.
void WorkBox::ShowUnseen()
{
    setAttribute(Qt::WA_DontShowOnScreen);
    show();
}

void WorkBox::BringToSight()
{
    hide();
    setAttribute(Qt::WA_DontShowOnScreen, false);
    show();
}

void WorkBox::Refresh()
{
    cmdCancel->setEnabled(m_progress->CanBeCancelled());
    // How long it takes to hand over what was made, or to end, nobody knows.
    m_done->setMaximum(m_progress->CanBeCancelled() ? m_progress->Steps() : 0);
    m_done->setValue(m_progress->Done());
    // A message that stands meanwhile would be blocked by a box that comes up later.
    if (testAttribute(Qt::WA_DontShowOnScreen) && isVisible() &&
        std::chrono::milliseconds(m_since.elapsed()) >= Unseen &&
        QApplication::activeModalWidget() == this)
        BringToSight();
}

void WorkBox::reject()
{
    m_progress->Cancel();
    Refresh();
}

void WorkBox::closeEvent(QCloseEvent *event)
{
    reject();
    if (event->spontaneous()) {
        event->ignore();
        return;
    }
    QTimer::singleShot(MostTimeToEnd, &m_loop, &QEventLoop::quit);
}
