// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "FieldReader.h"
#include "MdSequenceEdition.h"
#include "OpenFiles.h"
#include "ProjectFile.h"
#include "support/ScriptedDisk.h"

#include <cstdint>
#include <cstdlib>

namespace
{

void Require(bool condition)
{
    if (!condition)
        std::abort();
}

/// What saving and loading makes of a sequence: an empty one comes back as one byte 0.
QByteArray AfterLoading(const QByteArray &sequence)
{
    return sequence.isEmpty() ? QByteArray(1, '\0') : sequence;
}

void RequireEqual(const MdSequenceEdition &before, const MdSequenceEdition &after)
{
    Require(before.SendCount() == after.SendCount());
    Require(before.ReceiveCount() == after.ReceiveCount());
    for (int i = 0; i < before.SendCount(); ++i) {
        Require(after.SendAt(i).Name == before.SendAt(i).Name);
        Require(after.SendAt(i).Sequence == AfterLoading(before.SendAt(i).Sequence));
    }
    for (int i = 0; i < before.ReceiveCount(); ++i) {
        const ReceiveSequence &wanted = before.ReceiveAt(i);
        const ReceiveSequence &record = after.ReceiveAt(i);
        Require(record.Name == wanted.Name);
        Require(record.Sequence == AfterLoading(wanted.Sequence));
        Require(record.Answer == wanted.Answer);
        Require(record.Active == wanted.Active);
        Require(record.Comment == wanted.Comment);
    }
}

} // namespace

/// Any bytes are loaded as a project. What was read from them is saved and loaded again, and must
/// be the same; only quotes let names and comments in that a file cannot give back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    MdSequenceEdition tables;
    FieldReader fields(bytes);
    const Result read = ProjectFile::ReadProject(tables, fields);
    Require(read.Failed() != (read.Message().isEmpty() || read.Cause().isEmpty()));
    Require(tables.SendCount() >= 0 && tables.SendCount() <= MdSequenceEdition::Capacity);
    Require(tables.ReceiveCount() >= 0 && tables.ReceiveCount() <= MdSequenceEdition::Capacity);

    ScriptedDisk disk;
    OpenFiles files(disk);
    const QString path = QStringLiteral("project");
    Require(!ProjectFile::SaveProject(tables, files, path).Failed());
    MdSequenceEdition again;
    const Result second = ProjectFile::LoadProject(again, files, path);
    if (!bytes.contains('"')) {
        Require(!second.Failed());
        RequireEqual(tables, again);
    }
    return 0;
}
