// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ResponseStatistics.h"

/// What is counted, as texts of one line each, for whoever shows or writes it.
namespace ResponseText
{

/// "Status request", "answer to Poll", "no sequence", "channel 1 speaks, channel 2 answers"
QString Name(const ResponseKey &key);
/// "said", "sent by hand", "sent as answer", "received"
QString Event(ResponseKey::Kind kind);

/// Rows as comma-separated values with a head, in UTF-8; times in seconds.
QByteArray Csv(const QList<ResponseRow> &rows);

} // namespace ResponseText
