// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrinterDevice.h"

class RichTextModel;

/// A part of a view that is to be printed as the view shows it. The model stays unchanged
/// meanwhile.
struct ViewPrintout {
    const RichTextModel &model;
    qint64 from;
    qint64 to;
    qint32 background; ///< 0x00BBGGRR
};

/// Where printouts go.
class PrintOutput
{
  public:
    virtual ~PrintOutput() = default;

    /// The printer that was chosen; what is wrong with it shows in its State.
    virtual std::unique_ptr<PrinterDevice> MakePrinter(const PrinterChoice &choice) = 0;

    /// Prints all copies in one job; one that fails is thrown away.
    virtual Result PrintView(const ViewPrintout &printout, const PrinterChoice &choice) = 0;
};
