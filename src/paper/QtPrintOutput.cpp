// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtPrintOutput.h"

#include "QtPrinterDevice.h"
#include "ViewPages.h"

std::unique_ptr<PrinterDevice> QtPrintOutput::MakePrinter(const PrinterChoice &choice)
{
    return std::make_unique<QtPrinterDevice>(choice, m_files);
}

Result QtPrintOutput::PrintView(const ViewPrintout &printout, const PrinterChoice &choice)
{
    PrintPaper paper(choice, m_files);
    ViewPages pages(printout, paper, choice.colour);
    for (int copy = 0; copy < choice.copies; ++copy)
        if (Result printed = pages.Print(); printed.Failed())
            return printed;
    return paper.Finish();
}
