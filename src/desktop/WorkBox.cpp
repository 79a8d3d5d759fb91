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

namespace
{

/// What the user begins; what was begun before may come to its end.
bool IsCommand(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::TouchBegin:
    case QEvent::TabletPress:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::Shortcut:
    case QEvent::DragEnter:
        return true;
    case QEvent::Close:
        return event.spontaneous();
    default:
        return false;
    }
}

} // namespace

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
    qApp->installEventFilter(this);
    m_since.start();
    m_refresh.start();
    thread->start();
    m_loop.exec();
    m_refresh.stop();
    qApp->removeEventFilter(this);
    hide();
    const bool ended = thread->isFinished();
    if (ended)
        delete thread;
    return ended;
}

/// A modal box that is not on the screen would take the keyboard focus, which comes back from the
/// dialog before only now, and have none to give back: no key would be a command any more.
bool WorkBox::eventFilter(QObject *watched, QEvent *event)
{
    if (!isVisible() && !QApplication::activeModalWidget() && IsCommand(*event))
        return true;
    return QDialog::eventFilter(watched, event);
}

void WorkBox::Refresh()
{
    cmdCancel->setEnabled(m_progress->CanBeCancelled());
    // How long it takes to hand over what was made, or to end, nobody knows.
    m_done->setMaximum(m_progress->CanBeCancelled() ? m_progress->Steps() : 0);
    m_done->setValue(m_progress->Done());
    // A message that stands meanwhile would be blocked by a box that comes up later.
    if (!isVisible() && std::chrono::milliseconds(m_since.elapsed()) >= Unseen &&
        !QApplication::activeModalWidget())
        show();
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
