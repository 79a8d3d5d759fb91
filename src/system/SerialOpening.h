// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineDamage.h"
#include "LineSettings.h"
#include "Result.h"
#include "SerialDevice.h"

#include <QByteArray>
#include <QString>

#include <memory>

/// What a line is to be opened with.
struct LineRequest {
    int comNumber = 1; ///< as messages call it
    QString device;    ///< canonical name
    QString alias;     ///< the name that the user gave
    LineSettings settings;
    bool requestToSend = true;
    bool reopens = false; ///< a device that went away is opened again when it is back
    /// Opened for reading alone, so that nothing can be written to it, and without a lock file of
    /// this program's. Others are kept away all the same.
    bool listensOnly = false;
};

/// Opens a serial device for this program alone and sets it up. That may take seconds, on whatever
/// thread it is done. What nobody takes over is closed as it was found.
class SerialOpening final
{
  public:
    explicit SerialOpening(const LineRequest &request);
    ~SerialOpening();
    Q_DISABLE_COPY_MOVE(SerialOpening)

    const Result &State() const { return m_state; }
    const QString &Device() const { return m_device; } ///< canonical name

    /// The device, which is open until it is taken over or this object goes; also where it was
    /// opened but did not take its settings.
    SerialDevice::Handle Handle() const { return m_handle; }
    /// To be taken over, all of it, when State tells no failure.
    SerialDevice::Handle TakeHandle();
    std::unique_ptr<SerialDevice::Lock> TakeLock() { return std::move(m_lock); }
    /// The line as it was found.
    const QByteArray &LineBefore() const { return m_lineBefore; }

    /// What was found right behind the settings, so that what came in meanwhile is taken for what
    /// it is.
    struct Marks {
        bool marked = false;
        qsizetype unmarkedBytes = 0; ///< that came before
        DriverCounters counters;
    };
    const Marks &MarksFound() const { return m_marks; }

  private:
    Result Open(const LineRequest &request);
    Result Configure(const LineRequest &request);

    QString m_device;
    SerialDevice::Handle m_handle = SerialDevice::NoHandle;
    std::unique_ptr<SerialDevice::Lock> m_lock; ///< null for one that only listens
    QByteArray m_lineBefore;
    Marks m_marks;
    Result m_state;
};
