// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MainLayout.h"

#include <algorithm>

namespace
{

constexpr int ListsLeft = 50;
constexpr int LeastListsWidth = 1500;
constexpr int LeastListHeight = 2000;

int Bounded(int wanted, int least, int innerLength)
{
    return std::min(std::max(wanted, least), innerLength - least);
}

MainLayout::Span FromTo(int start, int end)
{
    return {start, std::max(0, end - start)};
}

MainLayout::Span Inset(const MainLayout::Span &span, int by)
{
    return {span.start + by, std::max(0, span.length - 2 * by)};
}

} // namespace

namespace MainLayout
{

Horizontal VSizeControls(int x, int innerWidth)
{
    const int splitter = Bounded(x, LeastListsWidth, innerWidth);
    Horizontal sums{};
    sums.splitter = splitter;
    sums.lists = {ListsLeft, std::max(0, splitter - ListsLeft)};
    sums.tabs = {splitter + 100, std::max(0, innerWidth - splitter - BesideTabs)};
    sums.title = Inset(sums.tabs, 20);
    sums.views = Inset(sums.tabs, 80);
    return sums;
}

Vertical HSizeControls(int y, const InnerArea &inner)
{
    const int aboveStatusBar = inner.height - inner.statusBar;
    Vertical sums{};
    sums.splitter = Bounded(y, LeastListHeight, inner.height);
    sums.titleRow = inner.toolBar + 120;
    sums.sendList = FromTo(sums.titleRow + inner.title, sums.splitter);
    sums.receiveTitle = sums.splitter + 140;
    sums.receiveList = FromTo(sums.receiveTitle + inner.title, aboveStatusBar - 50);
    sums.tabs = FromTo(sums.titleRow, aboveStatusBar - BelowTabs);
    sums.views = {sums.tabs.start + inner.title + 100,
                  std::max(0, sums.tabs.length - inner.title - 200)};
    return sums;
}

} // namespace MainLayout
