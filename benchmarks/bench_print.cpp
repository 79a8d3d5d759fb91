// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "MdPrint.h"
#include "MdSequenceEdition.h"
#include "OpenFiles.h"
#include "PrintSettings.h"
#include "ProjectState.h"
#include "QtPrintOutput.h"
#include "SampleTraffic.h"
#include "SequenceSettings.h"
#include "SystemFiles.h"
#include "support/FixedClock.h"
#include "support/ScriptedPrompts.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace
{

/// Send sequences of 1000 bytes each as a PDF file, a byte a word and a bar between two of them.
void PrintProjectAsPdf(benchmark::State &state)
{
    const QTemporaryDir folder;
    SystemFiles system;
    OpenFiles files(system);
    QtPrintOutput output(files);
    const ProjectState project;
    const DisplaySettings display;
    SequenceSettings form;
    form.Display = qint16(Representation::Hex);
    MdSequenceEdition tables;
    SampleTraffic::Random random(3);
    for (int i = 0; i < int(state.range(0)); ++i) {
        tables.AddSend({"Request", SampleTraffic::RandomBytes(random, 1000), {}});
    }
    CommunicationViews views;
    ScriptedPrompts prompts;
    prompts.printer = PrinterChoice{.pdfPath = folder.filePath(QStringLiteral("project.pdf"))};
    const FixedClock clock;
    PrintSettings settings;
    MdPrint print(
        {project, display, form, tables, views, settings, prompts, clock, output, [](bool) {}});
    for (auto _ : state)
        print.PrintProject();
    if (!prompts.shown.isEmpty())
        state.SkipWithError("the project was not printed");
    constexpr int WordsOfASequence = 1999;
    state.SetItemsProcessed(state.iterations() * state.range(0) * WordsOfASequence);
}

BENCHMARK(PrintProjectAsPdf)->Arg(64)->Unit(benchmark::kMillisecond);

} // namespace
