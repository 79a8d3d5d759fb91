// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdTraffic.h"

#include "AdapterLatency.h"
#include "MdRecord.h"
#include "RecordSource.h"
#include "RecordText.h"
#include "RemoteAddress.h"
#include "TelegramList.h"

#include <algorithm>
#include <utility>

namespace
{

constexpr int LookMilliseconds = 500;
constexpr int UsualLatency = 16; ///< of adapters that do not tell theirs, in ms

/// Ports without an adapter add next to nothing.
QString Uncertainty(const QStringList &devices)
{
    const bool remote = std::any_of(devices.begin(), devices.end(),
                                    [](const QString &each) { return IsRemoteAddress(each); });
    if (remote)
        return QStringLiteral("Times of reads; server and network add their own");
    int most = 0;
    for (const QString &device : devices) {
        if (IsAdapter(device))
            most = std::max(most, AdapterLatency(device).value_or(UsualLatency));
    }
    if (devices.isEmpty())
        most = UsualLatency;
    return most == 0 ? QStringLiteral("Times of reads")
                     : QStringLiteral("Times of reads; the adapter may add up to %1 ms").arg(most);
}

} // namespace

MdTraffic::MdTraffic(const MdTrafficParts &parts) : m_parts(parts)
{
    m_timer.setInterval(LookMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &MdTraffic::Look);
}

MdTraffic::~MdTraffic() = default;

void MdTraffic::Show()
{
    if (!m_window) {
        m_window = std::make_unique<frmTraffic>(
            TrafficWindowParts{m_book, m_parts.display, m_parts.settings});
        Q_EMIT Made(*m_window);
        if (!ShowsCapture())
            ShowSession();
    }
    if (m_window->isMinimized())
        m_window->showNormal();
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void MdTraffic::ShowCapture(std::shared_ptr<const TelegramSource> capture, const QString &name)
{
    m_capture = name;
    Show();
    m_timer.stop();
    m_window->List().SetFollows(false); // it is read from its beginning
    m_book.Show(std::move(capture));
    m_window->ShowOrigin({QStringLiteral("Capture ") + name,
                          QStringLiteral("Times of reads; the adapter may have added up to %1 ms")
                              .arg(UsualLatency)});
}

void MdTraffic::ShowSession()
{
    m_capture.clear();
    m_window->List().SetFollows(true);
    m_book.Show(std::make_shared<RecordSource>(m_parts.record.SharedSegments()));
    Look();
    m_timer.start();
}

/// What there is to say may have changed.
void MdTraffic::Look()
{
    const TrafficOrigin origin = OriginNow();
    if (origin != m_window->Origin())
        m_window->ShowOrigin(origin);
}

TrafficOrigin MdTraffic::OriginNow() const
{
    const RecordState state = m_parts.record.Segments().State();
    TrafficOrigin origin;
    if (state.bound == 0 || state.ended.Failed()) {
        origin.what =
            QStringLiteral("From memory, the last 64 MiB: the session's record ") +
            (state.bound == 0 ? QStringLiteral("is switched off")
                              : QStringLiteral("cannot be written: ") + state.ended.Cause());
    } else {
        origin.what = QStringLiteral("Record of this session");
        if (state.since > 0)
            origin.what += QStringLiteral(" since ") + RecordText::Time(state.since);
        if (state.taken > 0)
            origin.what += QStringLiteral("; what was before is gone");
    }
    origin.uncertainty = Uncertainty(m_parts.devices());
    return origin;
}

void MdTraffic::StorePlace()
{
    if (m_window)
        m_window->StorePlace();
}
