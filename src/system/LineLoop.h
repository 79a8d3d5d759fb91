// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Line.h"

#include <condition_variable>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

/// The thread that serves all lines: it waits for all of them at once, so that the order in which
/// things happened on two lines is known, or known to be uncertain. Local lines and sockets join
/// it with their descriptors.
class LineLoop final : public LineThread
{
  public:
    /// How a pass of the loop began.
    struct Wake {
        /// More than one line could be read, one could be read as soon as a pass ended that had
        /// taken longer than LongestPass or had found it behind a read (see OtherSpoke), or one of
        /// the lines is remote: what is read now may have come in another order.
        bool orderUncertain = false;
    };

    /// What the loop waits for. All calls come on the loop's thread.
    class Source
    {
      public:
        virtual ~Source() = default;

        /// Negative: not to be waited for at present.
        virtual int Descriptor() const = 0;
        virtual bool WantsToRead() const = 0;
        virtual bool WantsToWrite() const = 0;
        /// What it brings has been on its way for a time that nobody knows.
        virtual bool Remote() const { return false; }
        virtual void Readable(const Wake &wake) = 0;
        virtual void Writable() = 0;
        /// Comes every TickMilliseconds or so.
        virtual void Tick() {}
    };

    static constexpr int TickMilliseconds = 100;
    /// In nanoseconds; after a longer one the order of two lines is not known.
    static constexpr qint64 LongestPass = 1'000'000;

    LineLoop();
    /// All sources must have left.
    ~LineLoop() override;
    Q_DISABLE_COPY_MOVE(LineLoop)

    /// On the loop's thread. A source that leaves is not called any more.
    void Join(Source &source);
    void Leave(Source &source);
    /// Else nothing can have come in another order.
    bool SeveralSources() const { return m_sources.size() > 1; }
    /// Whether another source can be read by now: what this one has just read may then have come
    /// behind that. If not, it came before whatever others bring later.
    bool OtherSpoke(const Source &reader);

    void Do(const std::function<void()> &work) override;
    void Post(std::function<void()> work) override;
    void Schedule(TimedWork *work) override;

    /// Does on a thread of its own, without the priority of the lines, what may take long and must
    /// not keep them waiting. Nobody waits for it, not even the end of the program.
    static void RunBeside(std::function<void()> work);

    QString Priority() const override { return m_priority.get(); }

  private:
    void Run();
    qint64 TimeToWait() const;
    void Wait(qint64 nanoseconds);
    void DoPosted();
    void Serve();
    void DoTimed();
    void Tick();
    void Wakeup() const;

    std::vector<Source *> m_sources;
    std::vector<int> m_ready; ///< by source: what the last wait found
    TimedWork *m_timed = nullptr;
    qint64 m_passBegan = 0;
    qint64 m_nextTick = 0;
    bool m_met = false;  ///< in this pass a line spoke while another was read
    bool m_late = false; ///< the pass before took too long or met a line, which can still be read

    std::mutex m_lock; ///< guards what follows
    std::vector<std::function<void()>> m_posted;
    bool m_ending = false;

    int m_wakeup = -1;                      ///< a descriptor that ends the waiting
    std::shared_future<QString> m_priority; ///< comes as soon as the thread runs
    std::thread m_thread;
};
