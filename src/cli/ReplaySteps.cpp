// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ReplaySteps.h"

#include "JsonLines.h"

#include <algorithm>
#include <utility>

namespace
{

using Kind = TrafficEvent::Kind;

/// So many bytes are told of a step.
constexpr qsizetype MostBytesTold = 32;

ReplaySpeed SpeedOf(int speed)
{
    if (speed == 0)
        return ReplaySpeed::AtOnce;
    return speed == 1 ? ReplaySpeed::Own : ReplaySpeed::TenTimes;
}

} // namespace

ReplaySteps::ReplaySteps(std::unique_ptr<InputDevice> file, const Options &options)
    : m_file(std::move(file)), m_options(options), m_reader(*m_file), m_traffic(m_reader)
{
}

/// All lines are known once the first packet is.
Result ReplaySteps::Open()
{
    if (Result begun = m_reader.Begin(); begun.Failed())
        return begun;
    m_isRead = ReadSaid();
    const bool two = m_traffic.TwoChannels();
    if (two && !m_options.channel) {
        return Failure{QStringLiteral("the capture has two lines; --channel 1 or --channel 2 says "
                                      "whose device is played")};
    }
    if (!two && m_options.channel.value_or(0) == 1)
        return Failure{QStringLiteral("the capture has one line alone, so there is no channel 2")};
    return {};
}

/// The next event that has bytes; false behind the last one.
bool ReplaySteps::ReadSaid()
{
    CaptureReader::Step step = m_traffic.Next(m_event);
    while (step == CaptureReader::Step::Packet && m_event.kind != Kind::Received &&
           m_event.kind != Kind::Sent)
        step = m_traffic.Next(m_event);
    if (step == CaptureReader::Step::Damaged)
        m_damage = m_reader.Damage().cause;
    return step == CaptureReader::Step::Packet;
}

/// What one side says next, of the other one all that it says until the device does.
bool ReplaySteps::Read()
{
    const int channel = m_options.channel.value_or(0);
    m_said.reset();
    for (; m_isRead; m_isRead = ReadSaid()) {
        const bool here = m_event.channel == channel;
        const bool byDevice = here && m_event.kind == Kind::Received;
        // What is received on the other line comes from the other side, and goes to this device.
        if (!byDevice && here != (m_event.kind == Kind::Sent))
            continue;
        const bool goesOn = m_said && !m_said->byDevice && !byDevice &&
                            m_said->bytes.size() + m_event.bytes.size() <= MostBytesOfAStep;
        if (m_said && !goesOn)
            break;
        if (!m_said)
            m_said = Said{byDevice, {}, 0};
        m_said->bytes += m_event.bytes;
        m_said->time = m_event.time.monotonic;
    }
    return m_said.has_value();
}

ReplaySteps::Next ReplaySteps::Take(qint64 now)
{
    if (!m_pace) {
        m_pace.emplace(now);
        m_pace->SetSpeed(SpeedOf(m_options.speed), now);
    }
    if (m_pace->Paused()) { // what was expected has come
        m_pace->Reach(now);
        m_pace->SetPaused(false, now);
    }
    for (;;) {
        if (!m_said) {
            if (!Read())
                return {.over = true};
            m_pace->Expect(m_said->time);
        }
        if (m_said->byDevice || m_options.inStep)
            break;
        m_said.reset();
    }
    if (m_said->byDevice) {
        const qint64 wait = m_pace->UntilDue(now).value_or(0);
        if (wait > 0)
            return {.wait = wait};
        m_pace->Reach(now);
    } else {
        m_pace->SetPaused(true, now);
    }
    Next next{StepOf(*m_said)};
    m_before = m_said->time;
    m_said.reset();
    return next;
}

Step ReplaySteps::StepOf(const Said &said)
{
    Step step;
    step.kind = said.byDevice ? Step::Kind::Send : Step::Kind::Expect;
    step.line = ++m_count;
    step.bytes = said.bytes;
    step.text = (said.byDevice ? QStringLiteral("send-hex ") : QStringLiteral("expect hex:")) +
                JsonLines::Hex(said.bytes.first(std::min(said.bytes.size(), MostBytesTold)));
    if (said.bytes.size() > MostBytesTold)
        step.text += QStringLiteral("... (%1 bytes)").arg(said.bytes.size());
    const qint64 there = m_count == 1 ? 0 : said.time - m_before;
    step.time = m_options.within + std::clamp<qint64>(there, 0, ReplayPace::LongestSilence);
    return step;
}
