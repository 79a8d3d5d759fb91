// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrintDialogRequest.h"
#include "Result.h"

#include <QMarginsF>
#include <QPainter>

#include <functional>
#include <memory>
#include <vector>

class OpenFiles;

/// The pages of one print job on the printer or in the PDF file that was chosen, in dots from the
/// corner of the printable area. A file takes its place only when all of it is safely on the disk;
/// a printer, which prints what it was given even if its job is aborted, is given nothing before
/// the job is finished. One that is not is thrown away.
class PrintPaper final
{
  public:
    /// Twips to a logical pixel and to a typographic point.
    static constexpr qreal TwipsPerPixel = 15;
    static constexpr qreal TwipsPerPoint = 20;

    /// What a page keeps free at least, in points, unless the user wants other margins. No line of
    /// text runs to the very foot of a page.
    static QMarginsF UsualMargins() { return {18, 18, 18, 36}; }

    PrintPaper(const PrinterChoice &choice, OpenFiles &files);
    ~PrintPaper();
    Q_DISABLE_COPY_MOVE(PrintPaper)

    /// The printable area, in twips.
    QSizeF Size() const;
    qreal DotsPerTwip() const;
    /// What fonts are to be measured for.
    QPaintDevice &Device() const;

    /// Begins the job with its first page, or the next page. A job that cannot begin is thrown away
    /// at once.
    Result NextPage();
    /// Draws on the page that was begun last, at once or in Finish: what the drawing refers to must
    /// live until then.
    using Drawing = std::function<void(QPainter &painter)>;
    void Draw(Drawing drawing);
    /// Ends the job and releases it. If that fails it is thrown away.
    Result Finish();
    void Discard();

    /// What printer and PDF file do each in its own way.
    class Sheets;

  private:
    using Page = std::vector<Drawing>;

    Result BeginPage();
    Result BeginJob();
    Result DrawPages();

    std::unique_ptr<Sheets> m_sheets; ///< outlives the painter
    QPainter m_painter;
    std::vector<Page> m_pages; ///< that wait to be drawn
};
