// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "repr/Representation.h"

#include <functional>

class MdSequenceEdition;
class UserPrompts;
struct SettingsRecord;

/// What a sequence editor works with; all of it lives longer than the editor.
struct SequenceEditorParts {
    const SettingsRecord &settings;
    MdSequenceEdition &sequences;
    UserPrompts &prompts;
    /// The edit mode that this kind of editor was left in, for its next opening.
    Representation &mode;
    /// The record at this index was changed or, behind the last row, added.
    std::function<void(int)> RecordApplied;
    /// The record at this index was deleted.
    std::function<void(int)> RecordDeleted;
};
