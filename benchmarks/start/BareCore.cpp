// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

/// What any program of the toolkit without a window needs: it says a byte to the device that it is
/// given, answers what it hears with another, and ends when it hears more.
int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const int device = ::open(argv[argc - 1], O_RDWR | O_NOCTTY | O_NONBLOCK);
    const auto say = [device] { return ::write(device, "x", 1) == 1; };
    QSocketNotifier heard(device, QSocketNotifier::Read);
    bool before = false;
    QObject::connect(&heard, &QSocketNotifier::activated, &application, [&] {
        std::array<char, 16> bytes{};
        if (::read(device, bytes.data(), bytes.size()) <= 0 || std::exchange(before, true) ||
            !say())
            QCoreApplication::quit();
    });
    QTimer::singleShot(0, &application, say);
    return QCoreApplication::exec();
}
