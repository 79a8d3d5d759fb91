// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DemoProject.h"

#include "FieldReader.h"
#include "MdSequenceEdition.h"
#include "ProjectFile.h"

#include <QFile>

namespace
{

QByteArray DemoFile()
{
    QFile file(QStringLiteral(":/demo.sqx"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

void FillDemoProject(MdSequenceEdition &sequences)
{
    // The static library brings its resources only to those who ask for them.
    Q_INIT_RESOURCE(demo);
    FieldReader fields(DemoFile());
    const Result read = ProjectFile::ReadProject(sequences, fields);
    Q_ASSERT(!read.Failed());
    for (int i = 0; i < sequences.ReceiveCount(); ++i)
        sequences.RefreshAnswerName(i);
}
