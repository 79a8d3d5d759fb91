// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QTest>

/// The table of a test: made with the names of the columns, called once for each row.
template <typename... Values> class Cases
{
  public:
    template <typename... Name> explicit Cases(const Name *...columns)
    {
        (QTest::addColumn<Values>(columns), ...);
    }
    void operator()(const char *name, const Values &...values) const
    {
        (QTest::newRow(name) << ... << values);
    }
};
