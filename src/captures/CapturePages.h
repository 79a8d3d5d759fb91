// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

/// A program that is killed while it writes has written up to the end of a page of the system's
/// memory. So that a capture then ends behind a whole packet, no block is let cross such an end:
/// where one would, a block that no reader knows, and each one leaves out, fills the page up.
namespace CapturePages
{

/// Of the smallest pages that systems have; larger ones end where these do.
constexpr qsizetype PageSize = 4096;

/// The blocks, which follow at a place in the file, with what is to be written between them. A
/// block that is larger than a page stays as it is.
QByteArray Fill(QByteArrayView blocks, qint64 place);

} // namespace CapturePages
