// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "OptionsValues.h"

#include "PortDevices.h"

#include <tuple>

namespace
{

/// What is copied from the subjects and back.
template <typename Holder> auto Settings(Holder &holder)
{
    return std::tie(holder.comm, holder.stamp, holder.sequences, holder.log);
}

} // namespace

OptionsValues SnapshotOf(const OptionsSubjects &subjects)
{
    OptionsValues values;
    Settings(values) = Settings(subjects);
    return values;
}

Result ApplyTo(const OptionsSubjects &subjects, const OptionsValues &values)
{
    Settings(subjects) = Settings(values);
    for (auto device = values.devices.cbegin(); device != values.devices.cend(); ++device)
        subjects.assigned.Assign(device.key(), *device);
    return values.devices.isEmpty() ? Result() : subjects.assigned.Save();
}
