// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DescriptorLine.h"
#include "LineDamage.h"
#include "LineMarks.h"
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

    void EndReading() override;
    Result SetRTS(bool on) override;
    Result SetDTR(bool on) override;

  private:
    void Tick() override;

    void Arrived(const LineRead &read) override;
    qsizetype Receive(char *bytes, size_t most) override;
    qsizetype Transmit(const char *bytes, qsizetype count) override;
    Result Presence() override;
    qint64 UnsentInSystem() const override;
    void PutInOrder(qint64 lost) override;
    void Shut() override;

    Result Configure(const LineRequest &request);
    void BeginMarks();
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
};
