// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DescriptorLine.h"
#include "LineSettings.h"
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
};

/// A serial device of this machine.
class SerialLine final : public DescriptorLine
{
  public:
    explicit SerialLine(LineLoop &loop) : DescriptorLine(loop) {}
    ~SerialLine() override;
    Q_DISABLE_COPY_MOVE(SerialLine)

    /// Opens the device, which is not read yet. After a failure the device is as it was.
    Result Open(const LineRequest &request);

    Result SetRTS(bool on) override;
    Result SetDTR(bool on) override;

  private:
    void Tick() override;

    qsizetype Receive(char *bytes, size_t most) override;
    qsizetype Transmit(const char *bytes, qsizetype count) override;
    Result Presence() override;
    qint64 UnsentInSystem() const override;
    void PutInOrder(qint64 lost) override;
    void Shut() override;

    Result Configure(const LineRequest &request) const;
    void LookAtCounters(const LineTime &time);
    void LookAtModemLines(const LineTime &time);

    std::unique_ptr<SerialDevice::Lock> m_lock;
    QByteArray m_lineBefore; ///< the line as it was found, put back at the end
    LineRequest m_request;
    SerialDevice::Counters m_counters; ///< as read last
};
