// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClMyPrinter.h"

#include "UserPrompts.h"

#include <algorithm>
#include <cmath>

namespace
{

using LineEnd = PrinterDevice::LineEnd;

constexpr float LeftMargin = 1440;
constexpr float TopMargin = 1152;
constexpr float RightMargin = 720;
constexpr float BottomMargin = 1152;

constexpr float HeaderSpacing = 0.5F;
constexpr float RowSpacing = 0.2F;

/// Takes the first word and one blank behind it off the text.
QStringView TakeWord(QStringView &text)
{
    const qsizetype blank = text.indexOf(u' ');
    const QStringView word = blank < 0 ? text : text.first(blank);
    text = blank < 0 ? QStringView() : text.sliced(blank + 1);
    return word;
}

} // namespace

float ClMyPrinter::availableWidth()
{
    return Device().ScaleLeft() + Device().ScaleWidth() - RightMargin;
}

float ClMyPrinter::availableHeight()
{
    return Device().ScaleTop() + Device().ScaleHeight() - BottomMargin;
}

void ClMyPrinter::abortPrint()
{
    Device().KillDoc();
}

void ClMyPrinter::endPrint()
{
    Device().EndDoc();
}

void ClMyPrinter::startPrint()
{
    Device().EndDoc();
    Device().SetUp(orientation, colorMode);
    Device().SetScaleCorner({-LeftMargin, -TopMargin});
    m_cursor = {};
}

void ClMyPrinter::beginNewPage()
{
    m_cursor.y = 0;
    Device().NewPage();
}

void ClMyPrinter::printText(const QString &text, float x, float y)
{
    if (x != Here)
        SetCurrentX(x);
    if (y != Here)
        SetCurrentY(y);
    PrinterDevice &device = Device();
    device.SetPosition(m_cursor);
    bool firstOnLine = true;
    for (QStringView rest = text; !rest.isEmpty() && StillWanted();) {
        const QString word = TakeWord(rest).toString();
        if (device.Position().x + device.TextWidth(word) > availableWidth()) {
            device.Print({}, LineEnd::NextLine);
            m_cursor.y = device.Position().y;
            device.SetPosition(m_cursor);
            firstOnLine = true;
        }
        device.Print(firstOnLine ? word : u' ' + word, LineEnd::Stay);
        firstOnLine = false;
    }
    device.Print({}, LineEnd::NextLine);
    m_cursor = {0, device.Position().y};
}

void ClMyPrinter::printVertLine(float spacing)
{
    // Halves go to the even neighbour.
    const float distance = std::nearbyint(Device().TextHeight(QStringLiteral("X")) * spacing);
    SetCurrentY(m_cursor.y + distance);
    Device().Line({0, m_cursor.y}, {availableWidth(), m_cursor.y});
    SetCurrentY(m_cursor.y + distance);
}

void ClMyPrinter::printGrid(const PrinterGrid &grid)
{
    const QList<float> widths = ColumnWidths(grid);
    for (int row = grid.fixedRows; row < grid.RowCount(); ++row) {
        const bool newPage = checkForNewPage();
        if (row == grid.fixedRows || newPage) {
            printVertLine(HeaderSpacing);
            for (int fixed = 0; fixed < grid.fixedRows; ++fixed)
                PrintGridRow(grid.rows[fixed], widths);
            printVertLine(HeaderSpacing);
        }
        PrintGridRow(grid.rows[row], widths);
        printVertLine(RowSpacing);
    }
}

QList<float> ClMyPrinter::ColumnWidths(const PrinterGrid &grid)
{
    QList<float> widths(grid.ColumnCount(), 0);
    for (const QStringList &cells : grid.rows) {
        for (qsizetype column = 0; column < widths.size(); ++column) {
            const QString padded = cells.value(column) + QLatin1String("XX");
            widths[column] = std::max(widths[column], Device().TextWidth(padded));
        }
    }
    return widths;
}

/// All cells begin at the same height; the last one decides where the next row stands.
void ClMyPrinter::PrintGridRow(const QStringList &cells, const QList<float> &widths)
{
    float x = m_cursor.x;
    const float y = m_cursor.y;
    for (qsizetype column = 0; column < widths.size(); ++column) {
        printText(cells.value(column), x, y);
        x += widths[column];
    }
}

void ClMyPrinter::printPicture(const PrinterPicture &picture)
{
    const float width = availableWidth() - m_cursor.x;
    const float height = availableHeight() - m_cursor.y;
    const float ratio = picture.width / picture.height;
    if (ratio <= width / height)
        Device().PaintPicture(picture, {m_cursor, height * ratio, height});
    else
        Device().PaintPicture(picture, {m_cursor, width, width / ratio});
}

bool ClMyPrinter::checkForNewPage()
{
    if (m_cursor.y < availableHeight())
        return false;
    beginNewPage();
    return true;
}

bool ClMyPrinter::setup(const PrintDialogRequest &request)
{
    const auto choice = m_prompts.ChoosePrinter(request);
    if (!choice)
        return false;
    m_choice = *choice;
    m_device = m_output.MakePrinter(m_choice);
    orientation = m_choice.orientation;
    colorMode = m_choice.colour;
    return true;
}

PrinterDevice &ClMyPrinter::Device()
{
    if (!m_device)
        m_device = m_output.MakePrinter(m_choice);
    return *m_device;
}
