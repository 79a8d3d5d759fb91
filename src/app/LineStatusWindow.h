// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineStatus.h"

#include <QPointer>

#include <memory>

class PortDevices;
class PortFinder;
class QWidget;
class SerialPortControl;
class UserPrompts;
class frmLineStatus;
struct CommConfiguration;

/// What the window works with; all of it lives longer than LineStatusWindow.
struct LineStatusWindowParts {
    const CommConfiguration &comm;
    const PortDevices &devices;
    SerialPortControl &MSCommA; ///< channel 1
    SerialPortControl &MSCommB; ///< channel 2
    LineThread &lines;          ///< that serves both
    std::shared_ptr<const PortFinder> finder;
    UserPrompts &prompts;
};

/// Makes the window "Line Status" when it is first asked for, and tells it what the ports are and
/// do.
class LineStatusWindow
{
  public:
    explicit LineStatusWindow(LineStatusWindowParts parts);

    /// Over the owner, with which it goes.
    void Show(QWidget &owner);

  private:
    QList<LineStatus> Lines() const;
    LineStatus StatusOf(SerialPortControl &port, int comNumber) const;
    Result Switch(int channel, OwnLine line, bool on);

    LineStatusWindowParts m_parts;
    QPointer<frmLineStatus> m_window;
};
