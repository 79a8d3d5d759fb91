// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>
#include <QByteArrayView>

#include <functional>

class ClOutputFile;
class InputDevice;
class WorkProgress;

/// Copies captures, or parts of them, piece by piece.
namespace CapturePieces
{

/// How many steps of progress so many bytes are.
int StepsOf(qint64 size);

/// Adds what becomes of the next bytes, and returns how many are done with; the rest comes again
/// with what follows. Negative if what stands there ends the copy.
using Take = std::function<qsizetype(QByteArray &made, QByteArrayView bytes)>;

/// What is copied of a file.
struct Part {
    const InputDevice &file;
    qint64 begin = 0;
    qint64 end = 0; ///< or the end of the file, if that comes first
};

/// Ends early, and is no failure, when the work is cancelled.
Result Copy(const Part &part, const Take &take, ClOutputFile &to, WorkProgress &progress);

} // namespace CapturePieces
