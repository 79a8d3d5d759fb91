// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PrinterDevice.h"

#include <utility>

void PrinterDevice::SetUp(PageOrientation orientation, PrintColour colour)
{
    m_orientation = orientation;
    m_colour = colour;
    m_state = {};
    LayOutPages();
}

void PrinterDevice::Print(const QString &text, LineEnd end)
{
    const float height = TextHeight(text);
    const float bottom = ScaleTop() + ScaleHeight();
    // At the top a line stays even if it is too high: it would fit on no other page.
    if (m_position.y > 0 && m_position.y + height > bottom) {
        m_position.y = 0;
        m_continued = true;
        ++m_pagesDue;
    }
    const float width = TextWidth(text);
    if (!text.isEmpty() && ReachPage())
        Keep(DrawText(m_position, text, width));
    m_position.x += width;
    if (end == LineEnd::NextLine)
        m_position = {ScaleLeft(), m_position.y + height};
}

void PrinterDevice::Line(TwipPoint from, TwipPoint to)
{
    if (ReachPage())
        Keep(DrawLine(from, to));
}

void PrinterDevice::PaintPicture(const PrinterPicture &picture, const TwipRect &place)
{
    if (ReachPage())
        Keep(DrawPicture(picture, place));
}

void PrinterDevice::NewPage()
{
    // A page to which empty lines alone have come is as good as another.
    if (!m_continued)
        ++m_pagesDue;
    m_continued = false;
}

void PrinterDevice::EndDoc()
{
    const bool open = m_jobOpen;
    ForgetJob();
    if (open && !m_state.Failed())
        Keep(FinishJob());
    else if (open)
        DiscardJob();
}

void PrinterDevice::KillDoc()
{
    ForgetJob();
    DiscardJob();
}

/// Begins the pages that are due; false if nothing can be drawn.
bool PrinterDevice::ReachPage()
{
    for (; m_pagesDue > 0 && !m_state.Failed(); --m_pagesDue) {
        m_jobOpen = true;
        Keep(BeginPage());
    }
    m_continued = false;
    return !m_state.Failed();
}

void PrinterDevice::ForgetJob()
{
    m_jobOpen = false;
    m_pagesDue = 1;
    m_continued = false;
}

void PrinterDevice::Keep(const Result &step)
{
    if (!m_state.Failed())
        m_state = step;
}
