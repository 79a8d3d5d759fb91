// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Checksum.h"
#include "Representation.h"

#include <functional>

class MdSequenceEdition;
class UserPrompts;

/// What a sequence editor works with; all of it lives longer than the editor.
struct SequenceEditorParts {
    MdSequenceEdition &sequences;
    UserPrompts &prompts;
    /// The edit mode that this kind of editor was left in, for its next opening.
    Representation &mode;
    /// The record at this index was changed or, behind the last row, added.
    std::function<void(int)> RecordApplied;
    /// The record at this index was deleted.
    std::function<void(int)> RecordDeleted;
    /// Whether the mode in force lets answers go out.
    bool answersPossible = true;
    /// The checksum that was inserted last, for the next one; null to forget it.
    ChecksumRule *checksum = nullptr;
};
