// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include <QApplication>
#include <QMainWindow>

/// What any program of the toolkit needs for a window.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.show();
    return QApplication::exec();
}
