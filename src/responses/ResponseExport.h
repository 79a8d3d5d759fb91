// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ResponseQuestion.h"
#include "Result.h"

class OpenFiles;
class WorkProgress;

/// Every time that is counted in a source, one by one, as comma-separated values.
struct ResponseExport {
    ResponseQuestion question; ///< with a source

    /// On any thread. A file that is there is replaced once all is written; if that fails or is
    /// cancelled, it stays as it was.
    Result WriteTo(OpenFiles &files, const QString &path, WorkProgress &progress) const;
};
