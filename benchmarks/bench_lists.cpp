// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdSequenceEdition.h"
#include "SQReceiveSequenceList.h"
#include "SQSendSequenceList.h"
#include "SampleTraffic.h"
#include "SequenceRows.h"
#include "frmEditAction.h"
#include "frmEditEvent.h"
#include "support/ScriptedPrompts.h"

#include <QScrollBar>

#include <benchmark/benchmark.h>

namespace
{

constexpr int SequenceLength = 64;

/// Both tables full, every receive sequence with an answer.
void FillTables(MdSequenceEdition &tables)
{
    SampleTraffic::Random random(3);
    for (int i = 0; i < MdSequenceEdition::Capacity; ++i) {
        const QByteArray bytes = SampleTraffic::RandomBytes(random, SequenceLength);
        const QByteArray name = "Sequence " + QByteArray::number(i);
        tables.AddSend({name, bytes, {}});
        tables.AddReceive({.Name = name, .Sequence = bytes, .Answer = qint16(i + 1)});
    }
}

/// Both lists in a window of their own, filled.
struct Lists {
    MdSequenceEdition tables;
    SQSendSequenceList send;
    SQReceiveSequenceList receive;

    Lists()
    {
        FillTables(tables);
        for (SequenceList *list :
             {static_cast<SequenceList *>(&send), static_cast<SequenceList *>(&receive)}) {
            list->resize(400, 300);
            list->show();
        }
    }
    void Refresh(qint16 display)
    {
        send.SetRows(SequenceRows::SendRows(tables, display));
        receive.SetRows(SequenceRows::ReceiveRows(tables, display));
    }
    void Paint()
    {
        send.grab();
        receive.grab();
    }
};

/// A refresh of both lists, by representation, until it is painted.
void RefreshLists(benchmark::State &state, bool emptyFirst)
{
    Lists lists;
    for (auto _ : state) {
        if (emptyFirst) {
            lists.send.Clear();
            lists.receive.Clear();
        }
        lists.Refresh(qint16(state.range(0)));
        lists.Paint();
    }
}

/// One step of the wheel in each list, until it is painted.
void ScrollLists(benchmark::State &state)
{
    Lists lists;
    lists.Refresh(qint16(state.range(0)));
    lists.Paint();
    int step = 0;
    for (auto _ : state) {
        for (QScrollBar *bar : {lists.send.verticalScrollBar(), lists.receive.verticalScrollBar()})
            bar->setValue((step * 60) % qMax(1, bar->maximum()));
        lists.Paint();
        ++step;
    }
}

/// An editor opened on record 1000 of full tables, until it is painted.
template <typename Editor> void OpenEditor(benchmark::State &state)
{
    MdSequenceEdition tables;
    FillTables(tables);
    ScriptedPrompts prompts;
    Representation mode = Representation::Hex;
    tables.CurrentSendIndex = tables.CurrentReceiveIndex = 1000;
    for (auto _ : state) {
        Editor editor({tables, prompts, mode, [](int) {}, [](int) {}});
        editor.show();
        editor.grab();
    }
}

} // namespace

BENCHMARK(OpenEditor<frmEditAction>)->Unit(benchmark::kMillisecond);
BENCHMARK(OpenEditor<frmEditEvent>)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefreshLists, kept, false)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(RefreshLists, emptied, true)->Arg(3)->Unit(benchmark::kMillisecond);
BENCHMARK(ScrollLists)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
