// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ViewPages.h"

#include "BgrColour.h"
#include "FixedPitchFont.h"
#include "PrintPaper.h"
#include "RichTextModel.h"
#include "WorkProgress.h"

namespace
{

/// Between the printable area's edges and the text, in logical pixels: a third of an inch.
constexpr qreal Margin = 32;
/// What the background goes beyond the text.
constexpr qreal Edge = Margin / 4;

/// The views' font in the size that it has at 96 dots to the inch, whatever the screen has.
QFont PaperFont()
{
    constexpr qreal PixelsPerPoint = 96.0 / 72.0;
    QFont font = FixedPitchFont::ViewFont();
    font.setPixelSize(qRound(font.pointSizeF() * PixelsPerPoint));
    return font;
}

/// Of what stands in the margin.
QFont MarginFont()
{
    constexpr int PixelSize = 12;
    QFont font(QStringLiteral("Arial"));
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(PixelSize);
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
      m_layout(*printout.text),
      m_margin(printout.margin),
      m_background(BgrColour::ToColour(printout.background)),
      m_grey(colour == PrintColour::Monochrome)
{
    const QSizeF room = paper.Size() / PrintPaper::TwipsPerPixel - QSizeF(2 * Margin, 2 * Margin);
    m_width = room.width();
    m_layout.LayOutPart(printout.text->Begin(), printout.text->End(),
                        int(m_width / m_painter.Advance()));
    m_rowsPerPage = qMax<qsizetype>(qsizetype(room.height() / m_painter.RowHeight()), 1);
    if (m_grey)
        m_background = RichTextPainter::ToGrey(m_background);
}

int ViewPages::Count() const
{
    return int((RowsToPrint() + m_rowsPerPage - 1) / m_rowsPerPage);
}

Result ViewPages::Print(WorkProgress &progress)
{
    const int pages = Count();
    for (int page = 0; page < pages && progress.Wanted(); ++page) {
        if (Result begun = m_paper.NextPage(); begun.Failed())
            return begun;
        m_paper.Draw([this, page](QPainter &painter) {
            painter.save();
            painter.scale(ScaleOf(m_paper), ScaleOf(m_paper));
            painter.translate(Margin, Margin);
            PaintPage(painter, page);
            if (m_margin)
                PaintMargin(painter, page);
            painter.restore();
        });
        progress.Step();
    }
    return {};
}

/// The empty row behind a last line break is no reason for another page.
qsizetype ViewPages::RowsToPrint() const
{
    const qsizetype last = m_layout.RowCount() - 1;
    return last > 0 && m_layout.RowStart(last) == m_layout.RowEnd(last) ? last : last + 1;
}

void ViewPages::PaintPage(QPainter &painter, int page) const
{
    const qsizetype firstRow = page * m_rowsPerPage;
    const qsizetype rowCount = qMin(m_rowsPerPage, RowsToPrint() - firstRow);
    // Light text that was made for a dark view could not be read on white paper.
    if (m_background != Qt::white) {
        const QRectF text(0, 0, m_layout.Columns() * m_painter.Advance(),
                          qreal(rowCount) * m_painter.RowHeight());
        painter.fillRect(text.adjusted(-Edge, -Edge, Edge, Edge), m_background);
    }
    m_painter.Paint(painter, m_layout,
                    {.firstRow = firstRow, .rowCount = rowCount, .grey = m_grey});
}

/// One line above the text, in which the page's number stands at the right.
void ViewPages::PaintMargin(QPainter &painter, int page) const
{
    const QRectF line(0, -Margin, m_width, Margin - Edge);
    painter.setFont(MarginFont());
    painter.setPen(Qt::black);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter, m_margin->view);
    painter.drawText(line, Qt::AlignHCenter | Qt::AlignVCenter, m_margin->date);
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter,
                     QStringLiteral("Page %1 of %2").arg(page + 1).arg(Count()));
}
