// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ExtcapLines.h"

#include "CommConfiguration.h"
#include "PortDevices.h"
#include "PortListing.h"
#include "PortNumber.h"

#include <QMap>
#include <QSet>

#include <algorithm>
#include <utility>

QList<ExtcapLine> ExtcapLines(const CommConfiguration &comm, const PortDevices &devices,
                              const PortFinder &finder)
{
    QSet<int> listed = {comm.PortA()};
    if (comm.TwoChannels())
        listed.insert(comm.PortB());
    QMap<int, QString> names;
    for (int number = LeastPortNumber; number <= MostPortNumber; ++number) {
        const PortDevices::Meaning meaning = devices.MeaningOf(number);
        names[number] = meaning.device;
        if (meaning.source == PortDevices::Source::OwnAssignment)
            listed.insert(number);
    }
    QList<FoundPort> ports;
    for (const ListedPort &found : ListPorts(finder, names)) {
        ports.append(found.port);
        listed.unite(QSet(found.numbers.begin(), found.numbers.end()));
    }

    QList<ExtcapLine> lines;
    if (comm.TwoChannels())
        lines.append(
            {{comm.PortA(), comm.PortB()},
             QStringLiteral("Serial lines COM%1 and COM%2").arg(comm.PortA()).arg(comm.PortB())});
    for (const int number : std::as_const(listed)) {
        const QString device = DeviceText(names[number], ports);
        lines.append({{number},
                      QStringLiteral("Serial line COM%1").arg(number) +
                          (device.isEmpty() ? QString() : QStringLiteral(", ") + device)});
    }
    std::sort(lines.begin(), lines.end(),
              [](const ExtcapLine &a, const ExtcapLine &b) { return a.comNumbers < b.comNumbers; });
    return lines;
}
