// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ThriftyStyle.h"

#include <benchmark/benchmark.h>

#include <QApplication>

/// What all benchmark programs start with; they paint as the program does.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QApplication::setStyle(new ThriftyStyle);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
