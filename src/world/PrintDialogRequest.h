// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <memory>
#include <optional>

class QPrinter;

enum class PageOrientation : qint16 { Portrait = 1, Landscape = 2 };
enum class PrintColour : qint16 { Monochrome = 1, Colour = 2 };

/// Flags of a print dialog, with the values that they have everywhere.
namespace PrintFlags
{
constexpr int Selection = 0x001;     ///< opens with the selection chosen as the range
constexpr int NoSelection = 0x004;   ///< offers no selection
constexpr int NoPageNumbers = 0x008; ///< offers no range of pages
constexpr int ReturnDevice = 0x100;  ///< the caller paints on the printer itself
} // namespace PrintFlags

/// One dialog that lets the user choose a printer.
struct PrintDialogRequest {
    QString document{}; ///< what the job is called
    int flags = PrintFlags::NoSelection | PrintFlags::NoPageNumbers;
    QString pdfPath{};                   ///< the PDF file that is proposed; empty: the toolkit's
    std::optional<bool> marginText = {}; ///< offers the check box, so at first

    bool SelectionChosen() const { return flags & PrintFlags::Selection; }
};

/// What the user chose. It says how often the pages are to be printed; the printer itself prints
/// what it is given once.
struct PrinterChoice {
    QString document{};
    QString pdfPath{}; ///< the file that the printout goes to; empty for paper
    PageOrientation orientation = PageOrientation::Portrait;
    PrintColour colour = PrintColour::Colour;
    int copies = 1;
    bool selectionOnly = false;
    bool marginText = false;             ///< the margin says what the page shows
    std::shared_ptr<QPrinter> printer{}; ///< as it was set up; null: the system's default
};
