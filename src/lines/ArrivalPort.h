// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

/// A port as the shared queue and the hub see it: where arrivals go on the window's thread.
class ArrivalPort
{
  public:
    virtual ~ArrivalPort() = default;

    /// Takes the bytes into the receive buffer and raises the receive event.
    virtual void RaiseReceive(const QByteArray &bytes) = 0;
    /// Tells that the device is gone.
    virtual void RaiseDisconnected(const QString &description) = 0;
    /// There is room in the queue again after a Push that asked for a pause.
    virtual void ResumeReading() = 0;
};
