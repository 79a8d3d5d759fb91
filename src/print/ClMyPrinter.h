// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrintOutput.h"

#include <QList>
#include <QStringList>

#include <functional>

class UserPrompts;

/// A table of texts; every row has as many cells as the first.
struct PrinterGrid {
    QList<QStringList> rows;
    int fixedRows = 1; ///< the first ones, repeated at the top of each page

    int RowCount() const { return int(rows.size()); }
    int ColumnCount() const { return rows.isEmpty() ? 0 : int(rows.first().size()); }
};

/// Page layout on a printer: word-wrapped text, tables, rules and pictures within margins. All
/// lengths are in twips. The cursor counts from the corner that the left and the top margin make,
/// and is never negative.
///
/// A run is startPrint, printing, and then endPrint or abortPrint; setup before it lets the user
/// choose a printer. What fails on the way shows in State, and nothing more is printed.
class ClMyPrinter final
{
  public:
    /// Both live longer than the printer.
    ClMyPrinter(UserPrompts &prompts, PrintOutput &output) : m_prompts(prompts), m_output(output) {}

    /// The room between the margins.
    float availableWidth();
    float availableHeight();

    float currentX() const { return m_cursor.x; }
    float currentY() const { return m_cursor.y; }
    void SetCurrentX(float x) { m_cursor.x = NeverNegative(x); }
    void SetCurrentY(float y) { m_cursor.y = NeverNegative(y); }

    /// Take effect at startPrint.
    PageOrientation orientation = PageOrientation::Portrait;
    PrintColour colorMode = PrintColour::Colour;

    bool fontBold() { return Device().FontBold(); }
    void SetFontBold(bool bold) { Device().SetFontBold(bold); }

    /// Asked between words; if not, a long text ends early. Its run is then to be aborted.
    std::function<bool()> StillWanted = [] { return true; };

    void abortPrint();
    void endPrint();
    void startPrint();
    void beginNewPage();

    /// Prints from a place on; -1 stands for the cursor. Lines that follow begin at the same left
    /// edge, words are never split. Ends at the left margin below the text.
    void printText(const QString &text, float x = Here, float y = Here);
    /// Breaks pages between rows.
    void printGrid(const PrinterGrid &grid);
    /// As large as the rest of the page allows. The cursor stays.
    void printPicture(const PrinterPicture &picture);
    /// A rule over the available width, with room above and below of as many text heights.
    void printVertLine(float spacing);
    /// Begins a new page, and returns true, if the cursor is not above the bottom margin.
    bool checkForNewPage();

    /// Lets the user choose the printer; false if he cancels.
    bool setup(const PrintDialogRequest &request);
    /// How many times the user wants it.
    int Copies() const { return m_choice.copies; }

    /// The first failure since startPrint.
    Result State() const { return m_device ? m_device->State() : Result(); }

  private:
    static constexpr float Here = -1;

    static float NeverNegative(float value) { return value < 0 ? 0 : value; }

    PrinterDevice &Device();
    QList<float> ColumnWidths(const PrinterGrid &grid);
    void PrintGridRow(const QStringList &cells, const QList<float> &widths);

    UserPrompts &m_prompts;
    PrintOutput &m_output;
    PrinterChoice m_choice;
    std::unique_ptr<PrinterDevice> m_device; ///< null until it is needed
    TwipPoint m_cursor;
};
