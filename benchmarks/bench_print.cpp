// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SampleTraffic.h"
#include "comm/CommunicationViews.h"
#include "platform/SystemFiles.h"
#include "print/MdPrint.h"
#include "print/QtPrintOutput.h"
#include "project/OpenFiles.h"
#include "project/SettingsRecord.h"
#include "sequences/MdSequenceEdition.h"
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
    SettingsRecord settings;
    settings.Display = qint16(Representation::Hex);
    MdSequenceEdition tables;
    SampleTraffic::Random random(3);
    for (int i = 0; i < int(state.range(0)); ++i) {
        tables.EditSend(i).Name = "Request";
        tables.EditSend(i).Sequence = SampleTraffic::RandomBytes(random, 1000);
    }
    tables.SetSendCount(int(state.range(0)));
    CommunicationViews views;
    ScriptedPrompts prompts;
    prompts.printer = PrinterChoice{.pdfPath = folder.filePath(QStringLiteral("project.pdf"))};
    const FixedClock clock;
    MdPrint print({settings, tables, views, prompts, clock, output, [](bool) {}});
    for (auto _ : state)
        print.PrintProject();
    if (!prompts.shown.isEmpty())
        state.SkipWithError("the project was not printed");
    constexpr int WordsOfASequence = 1999;
    state.SetItemsProcessed(state.iterations() * state.range(0) * WordsOfASequence);
}

BENCHMARK(PrintProjectAsPdf)->Arg(64)->Unit(benchmark::kMillisecond);

} // namespace
