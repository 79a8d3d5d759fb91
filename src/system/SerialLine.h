// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineLoop.h"
#include "LineSettings.h"
#include "SerialDevice.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <atomic>
#include <memory>
#include <mutex>

/// What a line is to be opened with.
struct LineRequest {
    int comNumber = 1; ///< as messages call it
    QString device;    ///< canonical name
    QString alias;     ///< the name that the user gave
    LineSettings settings;
    bool requestToSend = true;
};

/// A serial device of this machine on the loop of lines. Opened and closed by the window's thread;
/// what Line declares belongs to the lines' thread.
class SerialLine final : public Line, private LineLoop::Source
{
  public:
    /// The most bytes that may wait to be sent, but for a single write while none wait.
    static constexpr qint64 MostUnsentBytes = 1024 * 1024;
    /// The most that one read brings.
    static constexpr qsizetype MostBytesOfARead = 64 * 1024;

    /// The loop lives longer than the line.
    explicit SerialLine(LineLoop &loop) : m_loop(loop) {}
    ~SerialLine() override;
    Q_DISABLE_COPY_MOVE(SerialLine)

    /// Opens the device, which is not read yet. After a failure the device is as it was.
    Result Open(const LineRequest &request);
    /// Waits for bytes still to be sent, one second at most, and returns how many are thrown away.
    /// Reading must have ended.
    qint64 Close();
    bool IsOpen() const { return m_open; }

    void Listen(LineListener *listener) override { m_listener = listener; }
    const LineListener *Listener() const { return m_listener; }
    void BeginReading() override;
    void EndReading() override;
    void Resume() override { m_paused = false; }
    Result Write(const QByteArray &bytes) override;
    LineTime Now() const override;
    Result SetRTS(bool on) override;
    Result SetDTR(bool on) override;
    LineCounts Counts() const override;

  private:
    int Descriptor() const override { return m_handle; }
    bool WantsToRead() const override { return m_reading && !m_paused; }
    bool WantsToWrite() const override { return !m_unsent.isEmpty(); }
    void Readable(const LineLoop::Wake &wake) override;
    void Writable() override;
    void Tick() override;

    Result Configure(const LineRequest &request) const;
    QString OpenFailure(const LineRequest &request, int error) const;
    bool ReadOnce(const LineLoop::Wake &wake);
    void LookAtCounters(const LineTime &time);
    void LookAtModemLines(const LineTime &time);
    void Send();
    void CheckDevice();
    void Leave(const QString &cause);
    qint64 WaitUntilSent();
    qint64 UnsentBytes() const;

    /// What is counted; written by the lines' thread, read by any.
    struct Tally {
        std::atomic<qint64> receivedBytes = 0, receivedChunks = 0, sentBytes = 0, sentChunks = 0;
        std::atomic<qint64> waiting = 0, damaged = 0, breaks = 0, overruns = 0;
        std::atomic<int> modem = -1; ///< a bit for each line; negative: the driver has none
        std::atomic<bool> counted = false, RTS = false, DTR = false;
    };
    void Forget();

    LineLoop &m_loop;
    LineListener *m_listener = nullptr;
    std::unique_ptr<SerialDevice::Lock> m_lock;
    SerialDevice::Handle m_handle = SerialDevice::NoHandle;
    QByteArray m_lineBefore; ///< the line as it was found, put back at the end
    LineRequest m_request;
    std::atomic<bool> m_open = false; ///< from Open to Close, whether the device is there or not
    bool m_reading = false;
    bool m_paused = false;             ///< the listener had no room
    bool m_wasRead = false;            ///< since it was opened
    QByteArray m_unsent;               ///< what the system has not taken yet
    SerialDevice::Counters m_counters; ///< as read last
    std::array<char, MostBytesOfARead> m_part;
    Tally m_tally;
};
