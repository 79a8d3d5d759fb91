// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineLoop.h"
#include "SerialPort.h"
#include "SerialPortHub.h"

/// The two serial ports of the program, on the one loop that serves them.
struct SerialPorts {
    /// Both live longer than the ports. Without prompts nothing is shown while an opening takes
    /// long.
    explicit SerialPorts(const PortDevices &devices, UserPrompts *prompts = nullptr)
        : MSCommA(lines, hub, devices), MSCommB(lines, hub, devices)
    {
        if (!prompts)
            return;
        MSCommA.WaitThrough(*prompts);
        MSCommB.WaitThrough(*prompts);
    }

    /// Of those that are open.
    QStringList OpenDevices() const
    {
        QStringList devices;
        for (const SerialPort *port : {&MSCommA, &MSCommB}) {
            if (port->PortOpen())
                devices += port->Device();
        }
        return devices;
    }

    LineLoop lines;
    SerialPortHub hub;
    SerialPort MSCommA; ///< channel 1
    SerialPort MSCommB; ///< channel 2
};
