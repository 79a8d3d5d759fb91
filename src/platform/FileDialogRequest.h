// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// One dialog that lets the user choose a file. Whether an existing file may be overwritten is
/// not its affair: only the caller knows which file will be written.
struct FileDialogRequest {
    enum class Purpose {
        Open, ///< an existing file
        Save  ///< a file in an existing folder
    };

    Purpose purpose = Purpose::Open;
    QString title;
    QString filter; ///< description and pattern, parted by "|", as "Texts (*.txt)|*.txt"
    QString folder; ///< where it starts
    QString name{}; ///< what stands in its name field at first
};
