// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Line.h"
#include "ReceiveDetection.h"
#include "TrafficEvent.h"
#include "WatchSnapshot.h"

#include <array>
#include <functional>
#include <memory>

class TrafficStream;

/// Judges what the lines say, where they say it: feeds detection, sends the answers, and appends
/// what happened to the stream. All of it happens on the lines' thread, but for what is said here.
class LineJudge final
{
  public:
    /// How communication was started.
    struct Session {
        bool twoChannels = false;
        bool answers = true; ///< whether anything may be sent at all
        /// Of the channels.
        std::array<QString, 2> names = {QStringLiteral("COM1"), QStringLiteral("COM2")};
    };

    /// Something for the window's thread, told on the lines' thread.
    struct Reports {
        std::function<void(int channel, const QString &cause)> gone;
        std::function<void(int channel, const QString &cause)> notSent;
        std::function<void(int channel)> sentAgain; ///< after a notSent
        std::function<void()> awayOrBack = [] {};   ///< a line's device
        /// The subject is another one for each kind of notice and port.
        std::function<void(const QString &about, const QString &text)> notice =
            [](const QString &, const QString &) {};
    };

    /// Board and stream live longer than the judge. Answers go out on the first line; without one
    /// nothing may be sent.
    LineJudge(const WatchBoard &board, TrafficStream &stream, Line *lineA, Reports reports);

    /// Who listens to channel 0 or 1.
    LineListener &Ear(int channel) { return m_ears[size_t(channel)]; }

    /// To be called while no line is read. Forgets all bytes.
    void Begin(const Session &session);
    /// Forgets the bytes of one channel.
    void Forget(int channel) { m_detection.Clear(DirectionOf(channel)); }

    /// Whether the consumers have room; lines are not read while they have none. May be set and
    /// asked on any thread.
    std::function<bool()> HasRoom = [] { return true; };

    /// Sends on the first line what the user wants sent; shown whether the line takes it or not,
    /// but not while its device is away. Fails if the line does not take it.
    Result Send(const QByteArray &bytes, const QByteArray &name);
    /// Whether the first line may be given something at all: not once its device has gone for good,
    /// when it would take it in silence.
    bool MaySend() const { return m_session.answers && !m_lineAGone; }

  private:
    class Ear final : public LineListener
    {
      public:
        Ear(LineJudge &judge, int channel) : m_judge(judge), m_channel(channel) {}

        void OnRead(const LineRead &read) override { m_judge.OnRead(m_channel, read); }
        void OnCondition(LineCondition condition, qint64 count, const LineTime &time) override;
        void OnModemLines(const ModemLines &lines, const LineTime &time) override;
        void OnGone(const QString &cause, const LineTime &time) override;
        void OnAway(const QString &cause, qint64 unsent, const LineTime &time) override;
        void OnBack(const LineTime &time) override;
        void OnRefused(const QString &cause) override;
        void OnOtherSettings(const QString &what) override;
        bool HasRoom() const override { return m_judge.HasRoom(); }

      private:
        TrafficEvent EventOf(TrafficEvent::Kind kind, const LineTime &time) const;
        const QString &Name() const;

        LineJudge &m_judge;
        const int m_channel;
    };

    int DirectionOf(int channel) const;
    void OnRead(int channel, const LineRead &read);
    void Judge(const TrafficEvent &chunk, QByteArrayView bytes);
    bool IsHeldBack(const Result &written) const;
    void TellHeldBack(const QString &cause);
    void TellSent(TrafficEvent sent, const Result &result);

    const WatchBoard &m_board;
    TrafficStream &m_stream;
    Line *const m_lineA;
    Reports m_reports;
    std::array<class Ear, 2> m_ears;
    Session m_session;
    ReceiveDetection m_detection;
    std::shared_ptr<const WatchSnapshot> m_watch;
    bool m_refused = false; ///< the line refused what it was given last
    bool m_lineAAway = false;
    bool m_lineAGone = false;    ///< for good: it would take answers in silence
    bool m_heldBackTold = false; ///< that answers are not sent, for now or at all
};
