// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include <QCoreApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QTimer>
#include <QWindow>

#include <unistd.h>

/// Writes a byte to the descriptor that the plug-in was given when the first window of the program
/// has been painted.
class WindowSeen final : public QObject
{
    Q_OBJECT

  public:
    explicit WindowSeen(int descriptor) : m_descriptor(descriptor)
    {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *window =
            event->type() == QEvent::Expose ? qobject_cast<QWindow *>(watched) : nullptr;
        if (window && window->isExposed()) { // it is painted in answer to this event
            QCoreApplication::instance()->removeEventFilter(this);
            QTimer::singleShot(0, this, [this] {
                [[maybe_unused]] const auto written = ::write(m_descriptor, "w", 1);
            });
        }
        return false;
    }

  private:
    int m_descriptor;
};

/// Loaded into a program, which knows nothing of it, by QT_QPA_GENERIC_PLUGINS=windowseen:100,
/// where the number is the descriptor.
class WindowSeenPlugin final : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "WindowSeen.json")

  public:
    QObject *create(const QString &, const QString &argument) override
    {
        return new WindowSeen(argument.toInt());
    }
};

#include "WindowSeen.moc"
