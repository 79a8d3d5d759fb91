// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Demo.h"

#include "CommConfiguration.h"
#include "DemoInstrument.h"
#include "DemoProject.h"
#include "PortDevices.h"
#include "UserPrompts.h"

namespace
{

/// COM numbers and line settings of the demo.
constexpr int DemoPortA = 1;
constexpr int DemoPortB = 2;
constexpr LineSettings DemoLine = {};

} // namespace

std::unique_ptr<DemoInstrument> AttachDemo(const DemoParts &parts, CommMode mode)
{
    auto demo = std::make_unique<DemoInstrument>(mode);
    if (demo->State().Failed()) {
        parts.prompts.ShowMessage(
            CriticalMessage(QStringLiteral("The simulated instrument could not be attached. ") +
                            demo->State().Cause()));
        return nullptr;
    }
    parts.comm.run = {mode, DemoLine, DemoPortA, DemoPortB};
    parts.devices.AssignForRun(DemoPortA, demo->DevicePath(0));
    parts.devices.AssignForRun(DemoPortB, demo->DevicePath(1));
    FillDemoProject(parts.sequences);
    return demo;
}
