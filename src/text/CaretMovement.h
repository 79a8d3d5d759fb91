// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

/// What the movement keys ask of a caret, whatever it stands in.
enum class CaretMovement {
    NextCharacter,
    PreviousCharacter,
    NextWord,
    PreviousWord,
    NextRow,
    PreviousRow,
    NextPage,
    PreviousPage,
    RowStart,
    RowEnd,
    Begin,
    End
};

/// What a mouse selects at a time: one click a character, two a word, three a line.
enum class CaretUnit { Character, Word, Line };
