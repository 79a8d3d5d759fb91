// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "MdSequenceEdition.h"

/// Adds empty sequences until the table takes no more.
inline void FillSendTable(MdSequenceEdition &tables)
{
    while (tables.AddSend({})) {
    }
}

inline void FillReceiveTable(MdSequenceEdition &tables)
{
    while (tables.AddReceive({})) {
    }
}
