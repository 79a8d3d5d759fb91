// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ExtcapLines.h"

/// What Wireshark reads, a sentence a line.
namespace ExtcapSentences
{

QString Version();
QString Lines(const QList<ExtcapLine> &lines);
QString LinkTypes();
/// What Wireshark asks its user for before it captures the lines of these COM numbers.
QString Questions(const QList<int> &comNumbers, const CommConfiguration &comm,
                  const PortDevices &devices);

} // namespace ExtcapSentences
