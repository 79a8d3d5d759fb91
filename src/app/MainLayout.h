// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

/// Where the parts of the main window stand, as pure sums in twips (15 to a logical pixel).
/// Everything counts from the top left of the inner area below the menu bar.
namespace MainLayout
{

/// The window is never narrower.
constexpr int MinimumWidth = 3000;
constexpr int TitleHeight = 270;
/// How far a drag of the vertical splitter may come to either side; letting go applies the
/// narrower bounds of VSizeControls.
constexpr int VerticalDragLimit = 500;
/// The same for the horizontal splitter, whose layout has the same bounds.
constexpr int HorizontalDragLimit = 2000;
constexpr int SplitterThickness = 100;
/// The tabs are by so much narrower than what the splitter leaves them.
constexpr int BesideTabs = 300;
/// The room between the tab strip's body and the status bar, in which its ears hang.
constexpr int BelowTabs = 500;

/// A stretch along one axis.
struct Span {
    int start = 0;
    int length = 0;

    bool operator==(const Span &) const = default;
};

struct Horizontal {
    Span lists;   ///< both lists, their titles and the horizontal splitter
    int splitter; ///< left edge of the vertical splitter
    Span tabs;    ///< the tab strip
    Span title;   ///< the title above the views
    Span views;
};

struct Vertical {
    int titleRow; ///< top of the upper titles
    Span sendList;
    int splitter;     ///< top of the horizontal splitter
    int receiveTitle; ///< top of the title of the receive list
    Span receiveList;
    Span tabs; ///< the tab strip's body; its ears hang below it
    Span views;
};

/// The heights that the vertical sums start from.
struct InnerArea {
    int height;
    int toolBar;
    int statusBar;
    int title = TitleHeight; ///< more where the font of the titles needs it
};

/// Sums for the wanted left edge of the vertical splitter, bounded to 1,500 ... width - 1,500,
/// where the upper bound wins.
Horizontal VSizeControls(int x, int innerWidth);

/// Sums for the wanted top of the horizontal splitter, bounded to 2,000 ... height - 2,000, where
/// the upper bound wins. No height is negative.
Vertical HSizeControls(int y, const InnerArea &inner);

} // namespace MainLayout
