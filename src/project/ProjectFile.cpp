// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ProjectFile.h"

#include "ClInputFile.h"
#include "ClOutputFile.h"
#include "Common_Function.h"
#include "DecimalList.h"
#include "FieldReader.h"
#include "MdSequenceEdition.h"

#include <limits>

namespace
{

using ProjectFile::Failure;
using ProjectFile::Result;

constexpr QByteArrayView VersionKeyword = "VERSION";
constexpr QByteArrayView SendKeyword = "SEND";
constexpr QByteArrayView ReceiveKeyword = "RECEIVE";
constexpr QByteArrayView CommentKeyword = "COMMENT";
constexpr int WrittenVersion = 3;
constexpr int FirstVersionWithActive = 2;
constexpr int FirstVersionWithComment = 3;

Failure LoadFailure(const QString &cause)
{
    return {QStringLiteral("Errow while loading the project"), cause};
}

Failure LoadFailure(const FileFailure &failure)
{
    if (failure.inUse) {
        return {QStringLiteral("Could not load project. File already in use."),
                failure.description};
    }
    return LoadFailure(failure.description);
}

Failure NotAProject()
{
    return {QStringLiteral("Error while loading the project"),
            QStringLiteral("The first line is not VERSION")};
}

Failure UnknownVersion(int version)
{
    return {QStringLiteral("Unknown project file version"),
            QStringLiteral("The version is %1").arg(version)};
}

Failure SaveFailure(const FileFailure &failure)
{
    return {QStringLiteral("Error while saving the project file"), failure.description};
}

/// The text without blanks at both ends.
QByteArrayView Trimmed(QByteArrayView text)
{
    while (text.startsWith(' '))
        text = text.sliced(1);
    while (text.endsWith(' '))
        text.chop(1);
    return text;
}

/// A whole 16-bit number; blanks around it do not matter.
std::optional<qint16> WholeNumber(QByteArrayView text)
{
    QByteArrayView digits = Trimmed(text);
    const bool negative = digits.startsWith('-');
    if (negative || digits.startsWith('+'))
        digits = digits.sliced(1);
    int number = 0;
    for (const char digit : digits) {
        if (digit < '0' || digit > '9' || number > std::numeric_limits<qint16>::max())
            return std::nullopt;
        number = number * 10 + (digit - '0');
    }
    number = negative ? -number : number;
    if (digits.isEmpty() || number != qint16(number))
        return std::nullopt;
    return qint16(number);
}

/// Reads the records of one file into the tables. Every record is read whole before it is stored.
class RecordReader
{
  public:
    RecordReader(MdSequenceEdition &sequences, FieldReader &fields)
        : m_sequences(sequences), m_fields(fields)
    {
    }

    Result ReadAll()
    {
        if (Trimmed(m_fields.ReadInfo()) != VersionKeyword)
            return NotAProject();
        Result failure;
        m_version = ReadNumber("The version", failure);
        while (!failure && !m_fields.EndOfFile()) {
            const QByteArray line = m_fields.ReadInfo();
            if (line == SendKeyword)
                failure = ReadSend();
            else if (line == ReceiveKeyword)
                failure = ReadReceive();
        }
        return failure;
    }

  private:
    Result ReadSend()
    {
        Result failure = CheckRecord(m_sequences.SendCount());
        const int index = ReadIndex(failure);
        const QByteArray name = m_fields.ReadInfo();
        const QByteArray sequence = ReadSequence(failure);
        if (failure)
            return failure;
        SendSequence record = m_sequences.SendAt(index);
        record.Name = name;
        record.Sequence = sequence;
        m_sequences.LoadSend(index, record);
        return {};
    }

    Result ReadReceive()
    {
        Result failure = CheckRecord(m_sequences.ReceiveCount());
        const int index = ReadIndex(failure);
        const QByteArray name = m_fields.ReadInfo();
        const QByteArray sequence = ReadSequence(failure);
        const qint16 answer = ReadNumber("An answer", failure);
        qint16 active = 1;
        if (m_version >= FirstVersionWithActive)
            active = ReadNumber("An active flag", failure);
        if (failure)
            return failure;
        ReceiveSequence record = m_sequences.ReceiveAt(index);
        record.Name = name;
        record.Sequence = sequence;
        record.Answer = answer;
        record.Active = active;
        // Older versions know no comments: the record keeps what it had.
        if (m_version >= FirstVersionWithComment)
            record.Comment = ReadComment();
        m_sequences.LoadReceive(index, record);
        return {};
    }

    Result CheckRecord(int count) const
    {
        if (m_version < 1 || m_version > WrittenVersion)
            return UnknownVersion(m_version);
        if (count >= MdSequenceEdition::Capacity)
            return LoadFailure(QStringLiteral("There are too many records"));
        return {};
    }

    /// The readers below keep the first failure and read nothing once there is one.
    qint16 ReadNumber(const char *what, Result &failure)
    {
        if (failure)
            return 0;
        const auto number = WholeNumber(m_fields.ReadInfo());
        if (!number) {
            failure = LoadFailure(
                QStringLiteral("%1 is not a whole 16-bit number").arg(QLatin1StringView(what)));
        }
        return number.value_or(0);
    }

    int ReadIndex(Result &failure)
    {
        const int index = ReadNumber("An index", failure);
        if (!failure && (index < 0 || index >= MdSequenceEdition::Capacity))
            failure = LoadFailure(QStringLiteral("There is no record %1").arg(index));
        return index;
    }

    QByteArray ReadSequence(Result &failure)
    {
        if (failure)
            return {};
        const auto sequence = DecimalListToSeq(m_fields.ReadInfo());
        if (!sequence)
            failure = LoadFailure(QStringLiteral("A byte is not in the range 0 to 255"));
        return sequence.value_or(QByteArray());
    }

    /// The keyword and the blank behind it are not looked at more closely than this.
    QByteArray ReadComment()
    {
        const QByteArray line = m_fields.ReadInfo();
        return line.startsWith(CommentKeyword) ? line.mid(CommentKeyword.size() + 1) : QByteArray();
    }

    MdSequenceEdition &m_sequences;
    FieldReader &m_fields;
    int m_version = 0;
};

void WriteLine(ClOutputFile &file, QByteArrayView text)
{
    file.WriteInFile(text);
    file.NextLine();
}

void WriteSend(ClOutputFile &file, int index, const SendSequence &record)
{
    WriteLine(file, SendKeyword);
    WriteLine(file, QByteArray::number(index));
    WriteLine(file, record.Name);
    WriteLine(file, Common_Function::SeqToDecimalList(record.Sequence));
    file.NextLine();
}

void WriteReceive(ClOutputFile &file, int index, const ReceiveSequence &record)
{
    WriteLine(file, ReceiveKeyword);
    WriteLine(file, QByteArray::number(index));
    WriteLine(file, record.Name);
    WriteLine(file, Common_Function::SeqToDecimalList(record.Sequence));
    WriteLine(file, QByteArray::number(record.Answer));
    WriteLine(file, QByteArray::number(record.Active));
    file.WriteInFile(CommentKeyword);
    file.WriteInFile(" ");
    WriteLine(file, record.Comment);
    file.NextLine();
}

} // namespace

namespace ProjectFile
{

QString PathOf(const QString &folder, const QString &name)
{
    return folder + name + QStringLiteral(".sqx");
}

Result SaveProject(const MdSequenceEdition &sequences, OpenFiles &files, const QString &path)
{
    ClOutputFile file(files);
    if (const FileResult failure = file.OpenForReplacing(path))
        return SaveFailure(*failure);
    WriteLine(file, VersionKeyword);
    WriteLine(file, QByteArray::number(WrittenVersion));
    file.NextLine();
    for (int i = 0; i < sequences.SendCount(); ++i)
        WriteSend(file, i, sequences.SendAt(i));
    for (int i = 0; i < sequences.ReceiveCount(); ++i)
        WriteReceive(file, i, sequences.ReceiveAt(i));
    if (const FileResult failure = file.Commit())
        return SaveFailure(*failure);
    return {};
}

Result LoadProject(MdSequenceEdition &sequences, OpenFiles &files, const QString &path)
{
    sequences.ClearProject();
    ClInputFile file(files);
    if (const FileResult failure = file.OpenFile(path))
        return LoadFailure(*failure);
    return ReadProject(sequences, file.Fields());
}

Result ReadProject(MdSequenceEdition &sequences, FieldReader &fields)
{
    sequences.ClearProject();
    return RecordReader(sequences, fields).ReadAll();
}

} // namespace ProjectFile
