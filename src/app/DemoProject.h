// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

class MdSequenceEdition;

/// Replaces the sequences by those of the demo: requests to the simulated instrument, and
/// sequences that are recognised in what it says.
void FillDemoProject(MdSequenceEdition &sequences);
