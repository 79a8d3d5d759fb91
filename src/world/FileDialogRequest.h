// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// The classic flag word of file dialogs.
namespace FileDialogFlags
{
constexpr quint32 HideReadOnly = 0x4;       ///< no box for opening read-only; there never is one
constexpr quint32 AllowMultiselect = 0x200; ///< without effect: the answer is one path
constexpr quint32 PathMustExist = 0x800;    ///< a name in a missing folder is refused
constexpr quint32 CreatePrompt = 0x2000;    ///< without effect: whether a file is made, and which,
                                            ///< only the caller knows
constexpr quint32 Explorer = 0x80000;       ///< the look; the dialog has one
constexpr quint32 LongNames = 0x200000;     ///< as always
} // namespace FileDialogFlags

/// One dialog that lets the user choose a file. Whether an existing file may be overwritten is
/// not its affair: only the caller knows which file will be written.
struct FileDialogRequest {
    enum class Purpose {
        Open,  ///< an existing file
        Save,  ///< a file in an existing folder
        Device ///< an existing file or device, by the very name that is chosen
    };

    Purpose purpose = Purpose::Open;
    QString dialog; ///< object name of the dialog, which its help is found by
    QString title;
    QString filter; ///< description and pattern, parted by "|", as "Texts | *.txt"
    QString folder; ///< where it starts
    QString name{}; ///< what stands in its name field at first
    quint32 flags = FileDialogFlags::PathMustExist;
};
