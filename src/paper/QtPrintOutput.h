// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrintOutput.h"

class OpenFiles;

/// The system's printers, and PDF files.
class QtPrintOutput final : public PrintOutput
{
  public:
    /// The files live longer than the output and its printers.
    explicit QtPrintOutput(OpenFiles &files) : m_files(files) {}

    std::unique_ptr<PrinterDevice> MakePrinter(const PrinterChoice &choice) override;
    Result PrintView(const ViewPrintout &printout, const PrinterChoice &choice,
                     WorkProgress &progress) override;

  private:
    OpenFiles &m_files;
};
