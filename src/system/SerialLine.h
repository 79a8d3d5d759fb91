// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DescriptorLine.h"
#include "DeviceSearch.h"
#include "LineDamage.h"
#include "LineMarks.h"
#include "SerialOpening.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <mutex>

class DeviceReturn;

/// A serial device of this machine.
class SerialLine final : public DescriptorLine
{
  public:
    explicit SerialLine(LineLoop &loop);
    ~SerialLine() override;
    Q_DISABLE_COPY_MOVE(SerialLine)

    /// Opens the device, which is not read yet. After a failure the device is as it was.
    Result Open(const LineRequest &request);
    /// Canonical name of the device that was opened last; it may have another one when it is back.
    QString Device() const;

    void EndReading() override;
    Result SetRTS(bool on) override;
    Result SetDTR(bool on) override;
    Result SetBreak(bool on) override;

  private:
    void Tick() override;

    void Arrived(const LineRead &read) override;
    qsizetype Receive(char *bytes, size_t most) override;
    qsizetype Transmit(const char *bytes, qsizetype count) override;
    Result Presence() override;
    qint64 UnsentInSystem() const override;
    void PutInOrder(qint64 lost) override;
    void Shut() override;
    bool Waits() const override { return m_request.reopens; }
    void BeginWaiting() override;
    void EndWaiting() override;
    void LetGo() override;

    void TakeOver(SerialOpening &opening);
    void Return(SerialOpening &opening, const DeviceSearch &search);
    void Hear(const LineMarks::Piece &piece, LineRead read);
    void HearHeld();
    void Tell(LineCondition condition, quint32 count, const LineTime &time);
    void TellUntold(LineCondition condition, const DriverCounters &now);
    void LookAtDriver(bool tick);
    void LookAtModemLines();

    std::unique_ptr<SerialDevice::Lock> m_lock;
    QByteArray m_lineBefore; ///< the line as it was found, put back at the end
    LineRequest m_request;
    LineMarks m_marks;
    LineDamage m_damage;
    quint32 m_modemChanges = 0; ///< as the driver had counted at the last look
    DeviceSearch m_search;
    std::unique_ptr<DeviceReturn> m_return; ///< while the device is waited for
    mutable std::mutex m_nameLock;          ///< guards what follows
    QString m_device;                       ///< canonical name
};
