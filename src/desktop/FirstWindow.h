// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <thread>

class QBackingStore;

/// Helps the program's first window to come up. Until it is shown, the calling thread has short
/// turns, so that it goes on as soon as somebody has answered it; then long ones, because of the
/// lines. Meanwhile the system hands out the memory that the window is painted in, on a thread;
/// otherwise it comes page by page, each when something is painted in it, which takes a good part
/// of the time of that. To be made once the toolkit stands.
class FirstWindow final : public QObject
{
  public:
    FirstWindow();

    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void HandOut(QBackingStore &store);

    std::jthread m_thread;
};
