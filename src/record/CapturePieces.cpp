// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CapturePieces.h"

#include "ClOutputFile.h"
#include "FileSystem.h"
#include "WorkProgress.h"

#include <algorithm>

namespace CapturePieces
{

namespace
{

constexpr qint64 StepSize = 1024 * 1024;

} // namespace

int StepsOf(qint64 size)
{
    return int(size / StepSize) + 1;
}

Result Copy(const Part &part, const Take &take, ClOutputFile &to, WorkProgress &progress)
{
    QByteArray bytes;
    for (qint64 place = part.begin; place < part.end && progress.Wanted(); progress.Step()) {
        const qsizetype held = bytes.size();
        const qint64 most = std::min(StepSize, part.end - place);
        bytes.resize(held + qsizetype(most));
        const InputDevice::Given given = part.file.ReadAt(place, bytes.data() + held, most);
        if (given.result.Failed())
            return given.result;
        bytes.truncate(held + qsizetype(given.count));
        place = given.count < most ? part.end : place + most;
        QByteArray made;
        const qsizetype taken = take(made, bytes);
        to.WriteInFile(made);
        if (taken < 0 || to.State().Failed())
            return to.State();
        bytes.remove(0, taken);
    }
    return {};
}

} // namespace CapturePieces
