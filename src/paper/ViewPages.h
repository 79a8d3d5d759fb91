// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrintOutput.h"
#include "RichTextLayout.h"
#include "RichTextPainter.h"

#include <optional>

class PrintPaper;
class WorkProgress;

/// Text of a view on pages: the view's font and painter, as many columns as the paper has room
/// for, page breaks between rows.
class ViewPages final
{
  public:
    /// The text and the paper live longer, and the pages until the paper's job is finished.
    ViewPages(const ViewPrintout &printout, PrintPaper &paper, PrintColour colour);

    int Count() const;
    /// Prints all of it, from a new page on, as long as it is wanted.
    Result Print(WorkProgress &progress);

  private:
    qsizetype RowsToPrint() const;
    void PaintPage(QPainter &painter, int page) const;
    void PaintMargin(QPainter &painter, int page) const;

    PrintPaper &m_paper;
    RichTextPainter m_painter;
    RichTextLayout m_layout;
    std::optional<PageMargin> m_margin;
    qreal m_width; ///< of the text, in logical pixels
    qsizetype m_rowsPerPage;
    QColor m_background;
    bool m_grey;
};
