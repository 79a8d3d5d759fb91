// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include <benchmark/benchmark.h>

#include <QApplication>

/// What all benchmark programs start with.
int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
