// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ViewPages.h"

#include "BgrColour.h"
#include "FixedPitchFont.h"
#include "PrintPaper.h"

namespace
{

/// Between the printable area's edges and the text, in logical pixels: a third of an inch.
constexpr qreal Margin = 32;

/// The views' font in the size that it has at 96 dots to the inch, whatever the screen has.
QFont PaperFont()
{
    constexpr qreal PixelsPerPoint = 96.0 / 72.0;
    QFont font = FixedPitchFont::ViewFont();
    font.setPixelSize(qRound(font.pointSizeF() * PixelsPerPoint));
    return font;
}

/// Dots of the paper to a logical pixel.
qreal ScaleOf(const PrintPaper &paper)
{
    return paper.DotsPerTwip() * PrintPaper::TwipsPerPixel;
}

} // namespace

ViewPages::ViewPages(const ViewPrintout &printout, PrintPaper &paper, PrintColour colour)
    : m_paper(paper),
      m_painter(PaperFont(), ScaleOf(paper)),
      m_layout(printout.model),
      m_background(BgrColour::ToColour(printout.background)),
      m_grey(colour == PrintColour::Monochrome)
{
    const QSizeF room = paper.Size() / PrintPaper::TwipsPerPixel - QSizeF(2 * Margin, 2 * Margin);
    m_layout.LayOutPart(printout.from, printout.to, int(room.width() / m_painter.Advance()));
    m_rowsPerPage = qMax<qsizetype>(qsizetype(room.height() / m_painter.RowHeight()), 1);
    if (m_grey)
        m_background = RichTextPainter::ToGrey(m_background);
}

Result ViewPages::Print()
{
    const qsizetype rows = RowsToPrint();
    for (qsizetype row = 0; row < rows; row += m_rowsPerPage) {
        if (Result begun = m_paper.NextPage(); begun.Failed())
            return begun;
        PaintPage(row, qMin(m_rowsPerPage, rows - row));
    }
    return {};
}

/// The empty row behind a last line break is no reason for another page.
qsizetype ViewPages::RowsToPrint() const
{
    const qsizetype last = m_layout.RowCount() - 1;
    return last > 0 && m_layout.RowStart(last) == m_layout.RowEnd(last) ? last : last + 1;
}

void ViewPages::PaintPage(qsizetype firstRow, qsizetype rowCount)
{
    QPainter &painter = m_paper.Painter();
    painter.save();
    painter.scale(ScaleOf(m_paper), ScaleOf(m_paper));
    painter.translate(Margin, Margin);
    // Light text that was made for a dark view could not be read on white paper.
    if (m_background != Qt::white) {
        const QRectF text(0, 0, m_layout.Columns() * m_painter.Advance(),
                          qreal(rowCount) * m_painter.RowHeight());
        painter.fillRect(text.adjusted(-Margin / 4, -Margin / 4, Margin / 4, Margin / 4),
                         m_background);
    }
    m_painter.Paint(painter, m_layout,
                    {.firstRow = firstRow, .rowCount = rowCount, .grey = m_grey});
    painter.restore();
}
