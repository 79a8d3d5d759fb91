// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

class MdSequenceEdition;

/// Replaces the sequences by those of examples/demo.sqx, which is built in: requests to the
/// simulated instrument, and sequences that are recognised in what it says.
void FillDemoProject(MdSequenceEdition &sequences);
