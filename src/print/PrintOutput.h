// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrinterDevice.h"

#include <memory>
#include <optional>

class RichTextModel;
class WorkProgress;

/// What stands in the margin of a printed page, beside its number.
struct PageMargin {
    QString view;
    QString date;
};

/// Text that is to be printed as a view shows it.
struct ViewPrintout {
    std::shared_ptr<const RichTextModel> text;
    qint32 background;                     ///< 0x00BBGGRR
    std::optional<PageMargin> margin = {}; ///< nothing stands there without
};

/// Where printouts go.
class PrintOutput
{
  public:
    virtual ~PrintOutput() = default;

    /// The printer that was chosen, for one thread at a time; what is wrong with it shows in its
    /// State.
    virtual std::unique_ptr<PrinterDevice> MakePrinter(const PrinterChoice &choice) = 0;

    /// Prints all copies in one job. One that fails is thrown away; so is one that is cancelled,
    /// which is no failure. May be called on another thread.
    virtual Result PrintView(const ViewPrintout &printout, const PrinterChoice &choice,
                             WorkProgress &progress) = 0;
};
