// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrintOutput.h"
#include "RichTextLayout.h"
#include "RichTextPainter.h"

class PrintPaper;

/// A part of a view on pages: the view's font and painter, as many columns as the paper has room
/// for, page breaks between rows.
class ViewPages final
{
  public:
    /// The view and the paper live longer.
    ViewPages(const ViewPrintout &printout, PrintPaper &paper, PrintColour colour);

    /// Prints all of it, from a new page on.
    Result Print();

  private:
    qsizetype RowsToPrint() const;
    void PaintPage(qsizetype firstRow, qsizetype rowCount);

    PrintPaper &m_paper;
    RichTextPainter m_painter;
    RichTextLayout m_layout;
    qsizetype m_rowsPerPage;
    QColor m_background;
    bool m_grey;
};
