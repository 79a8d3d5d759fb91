// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DoctorReport.h"
#include "PortFacts.h"
#include "RemoteAddress.h"

/// What is to be thought of a port on another machine after it was reached for.
QList<Finding> RemoteFindings(const RemoteAddress &address, const RemoteFacts &facts);

/// The same of an address alone, whether it is right or wrong.
QList<Finding> AddressFindings(const ParsedAddress &address);
