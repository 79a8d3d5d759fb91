// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrintDialogRequest.h"
#include "Result.h"

#include <QByteArray>
#include <QString>

/// A place or a size on paper, in twips.
struct TwipPoint {
    float x = 0;
    float y = 0;
};

struct TwipRect {
    TwipPoint at;
    float width = 0;
    float height = 0;
};

/// A picture in a file format; only the ratio of its sides matters for its place on paper.
struct PrinterPicture {
    QByteArray file;
    float width = 0;
    float height = 0;
};

/// A printer with a current position. All lengths are in twips of its scale, whose corner
/// (ScaleLeft, ScaleTop) is that of the printable area. A line of text, empty or not, that does
/// not stand wholly above the printable area's bottom goes to the top of the next page, y = 0, its
/// left edge stays. A page is begun when something is drawn on it, so no job ends with an empty
/// one.
///
/// What fails is kept in State; from then on nothing is drawn, and the job is to be killed.
class PrinterDevice
{
  public:
    enum class LineEnd {
        Stay,    ///< behind the text
        NextLine ///< below it, at the scale's left edge
    };

    PrinterDevice() = default;
    virtual ~PrinterDevice() = default;
    Q_DISABLE_COPY_MOVE(PrinterDevice)

    /// Sets up the next job, without a failure, once there is no job open.
    void SetUp(PageOrientation orientation, PrintColour colour);
    PageOrientation Orientation() const { return m_orientation; }
    PrintColour Colour() const { return m_colour; }

    float ScaleLeft() const { return m_scaleCorner.x; }
    float ScaleTop() const { return m_scaleCorner.y; }
    void SetScaleCorner(TwipPoint corner) { m_scaleCorner = corner; }
    /// The printable area in the orientation set up.
    virtual float ScaleWidth() const = 0;
    virtual float ScaleHeight() const = 0;

    TwipPoint Position() const { return m_position; }
    void SetPosition(TwipPoint position) { m_position = position; }

    bool FontBold() const { return m_bold; }
    void SetFontBold(bool bold) { m_bold = bold; }
    /// In the current font.
    virtual float TextWidth(const QString &text) const = 0;
    virtual float TextHeight(const QString &text) const = 0;

    void Print(const QString &text, LineEnd end);
    /// A black line.
    void Line(TwipPoint from, TwipPoint to);
    void PaintPicture(const PrinterPicture &picture, const TwipRect &place);
    void NewPage();

    /// Releases the job to be printed; nothing happens without one.
    void EndDoc();
    /// Throws the job away.
    void KillDoc();

    /// The first failure since SetUp.
    const Result &State() const { return m_state; }

  protected:
    /// The pages of the next job, in the orientation and colour set up.
    virtual void LayOutPages() = 0;
    // What a kind of printer does.
    /// The first page of a job begins it.
    virtual Result BeginPage() = 0;
    /// The width is the text's.
    virtual Result DrawText(TwipPoint at, const QString &text, float width) = 0;
    virtual Result DrawLine(TwipPoint from, TwipPoint to) = 0;
    virtual Result DrawPicture(const PrinterPicture &picture, const TwipRect &place) = 0;
    virtual Result FinishJob() = 0;
    virtual void DiscardJob() = 0;

  private:
    bool ReachPage();
    void ForgetJob();
    void Keep(const Result &step);

    PageOrientation m_orientation = PageOrientation::Portrait;
    PrintColour m_colour = PrintColour::Colour;
    TwipPoint m_scaleCorner;
    TwipPoint m_position;
    bool m_bold = false;
    bool m_jobOpen = false;
    int m_pagesDue = 1;       ///< to be begun before the next drawing
    bool m_continued = false; ///< the last of them because a line did not fit
    Result m_state;
};
