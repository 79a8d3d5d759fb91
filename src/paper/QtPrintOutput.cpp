// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtPrintOutput.h"

#include "QtPrinterDevice.h"
#include "ViewPages.h"
#include "WorkProgress.h"

std::unique_ptr<PrinterDevice> QtPrintOutput::MakePrinter(const PrinterChoice &choice)
{
    return std::make_unique<QtPrinterDevice>(choice, m_files);
}

Result QtPrintOutput::PrintView(const ViewPrintout &printout, const PrinterChoice &choice,
                                WorkProgress &progress)
{
    PrintPaper paper(choice, m_files);
    ViewPages pages(printout, paper, choice.colour);
    progress.Begin(choice.copies * pages.Count());
    for (int copy = 0; copy < choice.copies; ++copy)
        if (Result printed = pages.Print(progress); printed.Failed())
            return printed;
    return progress.Settle() ? paper.Finish() : Result();
}
