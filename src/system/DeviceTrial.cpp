// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineLoop.h"
#include "LineVocabulary.h"
#include "SerialOpening.h"
#include "SystemPortFinder.h"

#include <future>
#include <memory>

namespace
{

constexpr std::chrono::seconds MostTime{5};

/// What the driver says of each speed that a line can be set to.
QList<DeviceTrial::Speed> SpeedsOf(SerialDevice::Handle handle, LineSettings settings)
{
    QList<DeviceTrial::Speed> speeds;
    for (const qint32 baud : LineVocabulary::Speeds) {
        settings.baud = baud;
        SerialDevice::ApplySettings(handle, settings);
        if (const auto line = SerialDevice::ReadLineSettings(handle, 0))
            speeds.append({baud, line->baud});
    }
    return speeds;
}

/// Leaves the device as it was.
DeviceTrial Try(const LineRequest &request)
{
    DeviceTrial trial;
    const SerialOpening opening(request);
    trial.asked = LineSettingsText(request.settings);
    trial.cause = opening.State().Cause();
    if (opening.Handle() != SerialDevice::NoHandle)
        trial.speeds = SpeedsOf(opening.Handle(), request.settings);
    return trial;
}

DeviceTrial Failed(const QString &cause, bool tried = true)
{
    DeviceTrial trial;
    trial.tried = tried;
    trial.cause = cause;
    return trial;
}

} // namespace

/// The thread is left to itself if the system keeps it too long.
DeviceTrial SystemPortFinder::TryDevice(const QString &device, const QString &settings) const
{
    const auto line = ParseLineSettings(settings);
    const QString name = CanonicalName(device);
    if (!line || name.isEmpty())
        return Failed(name.isEmpty() ? QStringLiteral("There is no device %1").arg(device)
                                     : QStringLiteral("%1 are no settings").arg(settings));
    if (!FactsOf(device).users.isEmpty())
        return Failed(QStringLiteral("not tried: it would disturb the program that has the device "
                                     "open"),
                      false);
    const auto promise = std::make_shared<std::promise<DeviceTrial>>();
    std::future<DeviceTrial> trial = promise->get_future();
    const LineRequest request = {1, name, device, *line};
    LineLoop::RunBeside([promise, request] { promise->set_value(Try(request)); });
    if (trial.wait_for(MostTime) != std::future_status::ready)
        return Failed(
            QStringLiteral("the system has not opened it within %1 seconds").arg(MostTime.count()));
    return trial.get();
}
