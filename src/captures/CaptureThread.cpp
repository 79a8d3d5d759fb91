// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureThread.h"

#include "CaptureEncoder.h"

#include <array>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace
{

/// So long, or until there is so much of it, what happens is let wait: then it is handed on in few
/// large pieces, and who tells of it need not wake the thread each time.
constexpr std::chrono::milliseconds LongestBurst{20};
constexpr qsizetype BytesOfABurst = 256 * 1024;

/// Bytes of a line that are not in the capture, by channel; empty if nothing is missing.
using Missing = std::array<std::optional<qint64>, 2>;

void Add(Missing &missing, const Missing &more)
{
    for (size_t channel = 0; channel < missing.size(); ++channel) {
        if (more[channel])
            missing[channel] = missing[channel].value_or(0) + *more[channel];
    }
}

/// What is missing of ports that others have followed: all of it is told on the first of these.
Missing OfOtherPorts(const Missing &missing)
{
    Missing folded;
    for (const std::optional<qint64> &count : missing) {
        if (count)
            folded[0] = folded[0].value_or(0) + *count;
    }
    return folded;
}

/// What is handed to the sink at once.
struct Piece {
    int section = 0; ///< see State
    QByteArray head; ///< not empty if a section begins with it
    QByteArray packets;
    Missing told; ///< what would be missing without it
};

} // namespace

struct CaptureThread::State {
    State(std::unique_ptr<CaptureSink> to, QString from)
        : sink(std::move(to)), program(std::move(from))
    {
    }

    void BeginSection(const QByteArray &sectionHead);
    void Encode(const TrafficEvent &event);
    void TellMissing(const LineTime &time);
    void Wake(bool inAHurry);

    void Run();
    std::deque<Piece> TakeWaiting();
    bool HandOn(const Piece &piece);

    const std::unique_ptr<CaptureSink> sink;
    const QString program;

    std::mutex lock; ///< guards what follows
    std::condition_variable changed;
    std::optional<CaptureEncoder> encoder; ///< of the session that is taken
    QByteArray headOfSection;
    int section = 0; ///< counts what differs in its head, so in its ports, from the one before
    std::deque<Piece> pieces;
    qsizetype waiting = 0; ///< bytes in the pieces, those at work among them
    Missing missing;       ///< and not told yet
    bool full = false;     ///< until half of it has been taken
    LineTime last;         ///< of the event before
    bool working = false;  ///< on pieces that have been taken out
    bool woken = false;    ///< has been told that there are pieces
    bool hurry = false;
    bool closing = false;
    bool finished = false;

    // Of the thread alone.
    QByteArray head; ///< of the section that the sink has not begun yet
};

CaptureThread::CaptureThread(std::unique_ptr<CaptureSink> sink, const QString &program)
    : m_state(std::make_shared<State>(std::move(sink), program))
{
    std::thread([state = m_state] { state->Run(); }).detach();
}

CaptureThread::~CaptureThread()
{
    Close();
    WaitUntilWritten(MostTimeToEnd);
}

void CaptureThread::Begin(const TrafficSession &session)
{
    const std::lock_guard guard(m_state->lock);
    m_state->encoder.reset();
    if (session.replay || m_state->closing)
        return;
    m_state->encoder.emplace(session.ports, m_state->program);
    m_state->BeginSection(m_state->encoder->Head());
    m_state->Wake(false);
}

void CaptureThread::Take(const TrafficEvent &event)
{
    const std::lock_guard guard(m_state->lock);
    State &state = *m_state;
    if (!state.encoder)
        return;
    state.last = event.time;
    state.full =
        state.full ? state.waiting > MostBytes / 2 : state.waiting + event.bytes.size() > MostBytes;
    if (state.full) {
        std::optional<qint64> &missing = state.missing[size_t(event.channel)];
        missing = missing.value_or(0) + event.bytes.size();
        return;
    }
    state.TellMissing(event.time);
    state.Encode(event);
    state.Wake(state.waiting >= BytesOfABurst);
}

void CaptureThread::End()
{
    const std::lock_guard guard(m_state->lock);
    if (!m_state->encoder)
        return;
    m_state->TellMissing(m_state->last);
    m_state->encoder.reset();
    if (!m_state->pieces.empty()) // else nobody takes back that it was woken
        m_state->Wake(true);
}

void CaptureThread::Close()
{
    End();
    const std::lock_guard guard(m_state->lock);
    m_state->closing = true;
    m_state->changed.notify_all();
}

bool CaptureThread::WaitUntilWritten(std::chrono::milliseconds most)
{
    std::unique_lock guard(m_state->lock);
    if (!m_state->pieces.empty())
        m_state->Wake(true);
    return m_state->changed.wait_for(guard, most, [this] {
        return m_state->closing ? m_state->finished : m_state->pieces.empty() && !m_state->working;
    });
}

/// What is missing of the one before, and could not be told there, is told in this one.
void CaptureThread::State::BeginSection(const QByteArray &sectionHead)
{
    if (std::exchange(headOfSection, sectionHead) != sectionHead) {
        ++section;
        missing = OfOtherPorts(missing);
    }
    pieces.push_back({section, sectionHead, {}, {}});
}

void CaptureThread::State::Encode(const TrafficEvent &event)
{
    if (pieces.empty() || pieces.back().packets.size() >= BytesOfABurst) {
        pieces.push_back({section, {}, {}, {}});
        pieces.back().packets.reserve(BytesOfABurst + CaptureEncoder::MostBytesOfAPacket);
    }
    Piece &piece = pieces.back();
    const qsizetype before = piece.packets.size();
    encoder->Append(piece.packets, event);
    waiting += piece.packets.size() - before;
    const bool isLost = event.kind == TrafficEvent::Kind::Lost;
    std::optional<qint64> &told = piece.told[size_t(event.channel)];
    told = told.value_or(0) + event.bytes.size() + (isLost ? event.count : 0);
}

void CaptureThread::State::TellMissing(const LineTime &time)
{
    const Missing untold = std::exchange(missing, {});
    for (size_t channel = 0; channel < untold.size(); ++channel) {
        if (!untold[channel])
            continue;
        TrafficEvent lost;
        lost.kind = TrafficEvent::Kind::Lost;
        lost.channel = int(channel);
        lost.time = time;
        lost.count = *untold[channel];
        Encode(lost);
    }
}

void CaptureThread::State::Wake(bool inAHurry)
{
    const bool wasWoken = std::exchange(woken, true);
    const bool wasHurried = hurry;
    hurry = hurry || inAHurry;
    if (!wasWoken || hurry != wasHurried)
        changed.notify_all();
}

void CaptureThread::State::Run()
{
    for (std::deque<Piece> work = TakeWaiting(); !work.empty(); work = TakeWaiting()) {
        for (const Piece &piece : work) {
            const bool kept = HandOn(piece);
            const std::lock_guard guard(lock);
            waiting -= piece.packets.size();
            if (!kept)
                Add(missing, piece.section == section ? piece.told : OfOtherPorts(piece.told));
        }
        const std::lock_guard guard(lock);
        working = false;
        changed.notify_all();
    }
    sink->Finish();
    const std::lock_guard guard(lock);
    finished = true;
    changed.notify_all();
}

/// Waits until there is something, and a burst of it; nothing at the end.
std::deque<Piece> CaptureThread::State::TakeWaiting()
{
    std::unique_lock guard(lock);
    changed.wait(guard, [this] { return !pieces.empty() || closing; });
    changed.wait_for(guard, LongestBurst, [this] { return hurry || closing; });
    hurry = woken = false;
    working = !pieces.empty();
    return std::exchange(pieces, {});
}

bool CaptureThread::State::HandOn(const Piece &piece)
{
    if (!piece.head.isEmpty())
        head = piece.head;
    if (!head.isEmpty() && sink->BeginSection(head).Failed())
        return false;
    head.clear();
    return piece.packets.isEmpty() || !sink->Write(piece.packets).Failed();
}
