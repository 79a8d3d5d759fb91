// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

/// What the print dialogs remember.
struct PrintSettings {
    /// A printed view has its name, the date and the page's number in the margin.
    bool MarginText = false;
};
