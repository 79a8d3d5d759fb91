// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Judgement.h"

namespace JudgementText
{

/// What was judged, for the report's head; shown as plain text.
struct Subjects {
    QString capture; ///< name of the file
    QString project; ///< empty for one without a name
};

/// The report: what there was, each sequence, and each place, in columns. Lines end with LF.
QString Of(const Judgement &judgement, const Subjects &subjects);

/// Its few lines on the capture as a whole.
QStringList Summary(const Judgement &judgement);

} // namespace JudgementText
