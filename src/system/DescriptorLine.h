// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineLoop.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <atomic>

/// A line that the system knows by a descriptor, on the loop of lines: what devices and sockets
/// have in common. Opened and closed by the window's thread; what Line declares, and what derived
/// classes add to it, belongs to the lines' thread.
class DescriptorLine : public Line, protected LineLoop::Source
{
  public:
    /// The most bytes that may wait to be sent, but for a single write while none wait.
    static constexpr qint64 MostUnsentBytes = 1024 * 1024;
    /// The most that one read brings.
    static constexpr qsizetype MostBytesOfARead = 64 * 1024;

    Q_DISABLE_COPY_MOVE(DescriptorLine)

    /// Waits for bytes still to be sent, one second at most, and returns how many are thrown away.
    /// Reading must have ended.
    qint64 Close();
    bool IsOpen() const { return m_open; }

    void Listen(LineListener *listener) override { m_listener = listener; }
    const LineListener *Listener() const { return m_listener; }
    void BeginReading() override;
    void EndReading() override;
    void Resume() override;
    Result Write(const QByteArray &bytes) override;
    qint64 Waiting() override;
    LineTime Now() const override;
    LineCounts Counts() const override;

  protected:
    static constexpr int NoHandle = -1;

    /// What is counted; written by the lines' thread, read by any.
    struct Tally {
        std::atomic<qint64> receivedBytes = 0, receivedChunks = 0, sentBytes = 0, sentChunks = 0;
        std::atomic<qint64> waiting = 0;
        std::array<std::atomic<qint64>, LineConditionCount> conditions{};
        std::atomic<int> modem = -1; ///< a bit for each line; negative: the driver has none
        std::atomic<bool> counted = false, RTS = false, DTR = false, away = false;

        /// Whether they differ from before.
        bool SetModem(const std::optional<ModemLines> &lines);
        std::optional<qint64> CountOf(LineCondition condition) const;
    };

    /// The loop lives longer than the line.
    explicit DescriptorLine(LineLoop &loop) : m_loop(loop) {}
    ~DescriptorLine() override = default;

    /// The last step of an opening: from here on m_handle is waited for. Tells nobody of the port
    /// but by its number.
    void Start(int comNumber);
    /// What every derived class begins its destruction with.
    void Abandon();
    /// Looks whether the other side is still there, and tells if it is not.
    void CheckPresence();
    /// Between BeginReading and EndReading, as long as the other side is there.
    bool Reading() const { return m_reading; }
    bool Paused() const { return m_paused; }
    /// Whether bytes wait that the system has not taken.
    bool HasUnsent() const { return !m_unsent.isEmpty(); }
    /// Counts what waits to be sent.
    void CountWaiting();

    /// Whether the line waits for the other side when that has gone, instead of telling of it. Then
    /// the derived class begins to look for it, and says when it is back with ComeBack.
    virtual bool Waits() const { return false; }
    virtual void BeginWaiting() {}
    /// At once; ComeBack is not called any more.
    virtual void EndWaiting() {}
    /// On the window's thread, at the end of a close: takes the time that it takes to hold nothing
    /// of the other side any more.
    virtual void LetGo() {}
    /// The other side is there again, with another m_handle. What it says is read from now on.
    void ComeBack();

    /// What one read has brought. A line that carries more than plain bytes decodes them here and
    /// delivers those that are left.
    virtual void Arrived(const LineRead &read) { Deliver(read); }
    /// Counts bytes of the line, and tells the listener.
    void Deliver(const LineRead &read);

    /// Takes what the system has received, without waiting. The count; 0 if there is nothing,
    /// negative if nothing can be received any more.
    virtual qsizetype Receive(char *bytes, size_t most) = 0;
    /// Hands bytes to the system, without waiting. The count; 0 if it takes none now, negative if
    /// it will not take any more.
    virtual qsizetype Transmit(const char *bytes, qsizetype count) = 0;
    /// Fails once the other side is no longer there.
    virtual Result Presence() = 0;
    /// Bytes that the system still has to send.
    virtual qint64 UnsentInSystem() const = 0;
    /// Before a close that was asked for; so many bytes are told as thrown away.
    virtual void PutInOrder(qint64 lost) = 0;
    /// Closes m_handle, in whatever state it is.
    virtual void Shut() = 0;

    LineLoop &m_loop;
    LineListener *m_listener = nullptr;
    int m_handle = NoHandle;
    bool m_wasRead = false; ///< since it was opened
    Tally m_tally;

  private:
    int Descriptor() const override { return m_handle; }
    bool WantsToRead() const override { return m_reading && !m_paused; }
    bool WantsToWrite() const override { return HasUnsent(); }
    void Readable(const LineLoop::Wake &wake) override;
    void Writable() override;

    void ReadWaiting();
    qsizetype ReadOnce(bool orderUncertain);
    bool Send();
    void Leave(const QString &cause);
    void TellGone();
    qint64 WaitUntilSent();

    int m_comNumber = 0;
    std::atomic<bool> m_open = false; ///< from Start to Close, whether the device is there or not
    bool m_reading = false;
    bool m_paused = false;     ///< the listener had no room
    QByteArray m_unsent;       ///< what the system has not taken yet
    QString m_goneCause;       ///< why the other side has gone; not told yet
    qint64 m_unsentOfGone = 0; ///< bytes that went with it; not told yet
    std::array<char, MostBytesOfARead> m_part;
};
