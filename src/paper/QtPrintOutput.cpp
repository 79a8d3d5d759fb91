// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtPrintOutput.h"

#include "QtPrinterDevice.h"
#include "ViewPages.h"

std::unique_ptr<PrinterDevice> QtPrintOutput::MakePrinter(const PrinterChoice &choice)
{
    return std::make_unique<QtPrinterDevice>(choice, m_files);
}

QString QtPrintOutput::PrintView(const ViewPrintout &printout, const PrinterChoice &choice)
{
    PrintPaper paper(choice, m_files);
    ViewPages pages(printout, paper, choice.colour);
    QString failure;
    for (int copy = 0; copy < choice.copies && failure.isEmpty(); ++copy)
        failure = pages.Print();
    return failure.isEmpty() ? paper.Finish() : failure;
}
