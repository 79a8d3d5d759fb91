// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PortDoctor.h"

#include "DeviceFindings.h"
#include "PortFinder.h"
#include "RemoteFindings.h"

namespace
{

QList<Finding> ExamineRemote(const PortFinder &finder, const QString &device,
                             Examination examination, const QString &settings)
{
    const ParsedAddress parsed = ParseRemoteAddress(device);
    QList<Finding> findings = AddressFindings(parsed);
    if (parsed.state.Failed())
        return findings;
    if (examination == Examination::Facts)
        return findings << Finding{QStringLiteral("Connection"), QStringLiteral("not tried")};
    const bool tries = examination == Examination::Try && !parsed.address.listens;
    return findings +
           RemoteFindings(parsed.address, finder.Reach(device, tries ? settings : QString()));
}

QList<Finding> ExamineDevice(const PortFinder &finder, const QString &device,
                             Examination examination, const QString &settings)
{
    const DeviceFacts facts = finder.FactsOf(device);
    QList<Finding> findings = DeviceFindings(device, facts);
    const bool port =
        facts.kind == DeviceFacts::Kind::Port || facts.kind == DeviceFacts::Kind::PseudoTerminal;
    if (port && examination == Examination::Try)
        findings += TrialFindings(finder.TryDevice(device, settings));
    else if (port)
        findings.append({QStringLiteral("Trial"), QStringLiteral("not tried")});
    return findings;
}

} // namespace

DoctorReport ExaminePort(const PortFinder &finder, const QString &device, Examination examination,
                         const QString &settings)
{
    const bool remote = IsRemoteAddress(device);
    return {device, remote ? ExamineRemote(finder, device, examination, settings)
                           : ExamineDevice(finder, device, examination, settings)};
}
