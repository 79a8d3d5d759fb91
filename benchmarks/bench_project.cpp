// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdSequenceEdition.h"
#include "OpenFiles.h"
#include "ProjectFile.h"
#include "SampleTraffic.h"
#include "SystemFiles.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace
{

constexpr qsizetype SequenceSize = 64;

/// Both tables full: 1025 send and 1025 receive sequences.
void FillTables(MdSequenceEdition &tables)
{
    SampleTraffic::Random random(3);
    for (int i = 0; i < MdSequenceEdition::Capacity; ++i) {
        const QByteArray number = QByteArray::number(i);
        tables.AddSend({"Request " + number, SampleTraffic::RandomBytes(random, SequenceSize), {}});
        tables.AddReceive({.Name = "Reply " + number,
                           .Sequence = SampleTraffic::RandomBytes(random, SequenceSize),
                           .Answer = qint16(i + 1),
                           .Comment = "[reply " + number + " has come]"});
    }
}

/// A full project in a file of the system's temporary folder.
struct Project {
    QTemporaryDir folder;
    QString path = folder.filePath(QStringLiteral("full.sqx"));
    SystemFiles system;
    OpenFiles files{system};
    MdSequenceEdition tables;

    Project()
    {
        FillTables(tables);
        if (const Result saved = ProjectFile::SaveProject(tables, files, path); saved.Failed())
            qFatal("%s: %s", qPrintable(path), qPrintable(saved.Cause()));
    }
};

void LoadFullProject(benchmark::State &state)
{
    Project project;
    for (auto _ : state) {
        if (ProjectFile::LoadProject(project.tables, project.files, project.path).Failed())
            state.SkipWithError("the project was not loaded");
    }
    state.SetBytesProcessed(state.iterations() * QFileInfo(project.path).size());
}

/// Until the disk holds the new file and it has taken the place of the old one: the time is mostly
/// that of fsync.
void SaveFullProjectWithFsync(benchmark::State &state)
{
    Project project;
    for (auto _ : state) {
        if (ProjectFile::SaveProject(project.tables, project.files, project.path).Failed())
            state.SkipWithError("the project was not saved");
    }
    state.SetBytesProcessed(state.iterations() * QFileInfo(project.path).size());
}

BENCHMARK(LoadFullProject)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(SaveFullProjectWithFsync)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
