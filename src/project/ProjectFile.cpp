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
#include <utility>

namespace
{

constexpr QByteArrayView VersionKeyword = "VERSION";
constexpr QByteArrayView SendKeyword = "SEND";
constexpr QByteArrayView ReceiveKeyword = "RECEIVE";
constexpr QByteArrayView CommentKeyword = "COMMENT";
constexpr int WrittenVersion = 3;
constexpr int FirstVersionWithActive = 2;
constexpr int FirstVersionWithComment = 3;

/// The file could not be read or written.
Failure LoadFailure(const Result &file)
{
    return {file.Cause(), file.Number(),
            file.Number() == FileAlreadyOpen
                ? QStringLiteral("Could not load project. File already in use.")
                : QStringLiteral("Errow while loading the project")};
}

Failure SaveFailure(const Result &file)
{
    return {file.Cause(), file.Number(), QStringLiteral("Error while saving the project file")};
}

/// A line of the file is to blame.
Failure LineFailure(const QString &message, qsizetype line, const QString &cause)
{
    return {QStringLiteral("Line %1: %2").arg(line).arg(cause), 0, message};
}

Failure TooLarge()
{
    constexpr qint64 MiB = 1024 * 1024;
    return {QStringLiteral("A larger file could not be opened again"), 0,
            QStringLiteral("The project is too large to be saved: a project file has at most %1 "
                           "MiB. Nothing has been written.")
                .arg(ClInputFile::MaxSize / MiB)};
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
            return LineFailure(QStringLiteral("Error while loading the project"), m_fields.Line(),
                               QStringLiteral("The first line is not VERSION"));
        Result read;
        m_version = ReadNumber("The version", read);
        m_versionLine = m_fields.Line();
        while (!read.Failed() && !m_fields.EndOfFile()) {
            const QByteArray line = m_fields.ReadInfo();
            if (line == SendKeyword)
                read = ReadSend();
            else if (line == ReceiveKeyword)
                read = ReadReceive();
        }
        return read;
    }

  private:
    Result ReadSend()
    {
        Result read = CheckRecord(m_sequences.SendCount());
        const int index = ReadIndex(read);
        const QByteArray name = m_fields.ReadInfo();
        const QByteArray sequence = ReadSequence(read);
        if (read.Failed())
            return read;
        SendSequence record = m_sequences.SendAt(index);
        record.Name = name;
        record.Sequence = sequence;
        m_sequences.LoadSend(index, record);
        return {};
    }

    Result ReadReceive()
    {
        Result read = CheckRecord(m_sequences.ReceiveCount());
        const int index = ReadIndex(read);
        const QByteArray name = m_fields.ReadInfo();
        const QByteArray sequence = ReadSequence(read);
        const qint16 answer = ReadNumber("An answer", read);
        qint16 active = 1;
        if (m_version >= FirstVersionWithActive)
            active = ReadNumber("An active flag", read);
        if (read.Failed())
            return read;
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
            return LineFailure(QStringLiteral("Unknown project file version"), m_versionLine,
                               QStringLiteral("The version is %1").arg(m_version));
        if (count >= MdSequenceEdition::Capacity)
            return Bad(QStringLiteral("There are too many records"));
        return {};
    }

    /// The readers below keep the first failure and read nothing once there is one.
    qint16 ReadNumber(const char *what, Result &read)
    {
        if (read.Failed())
            return 0;
        const auto number = WholeNumber(m_fields.ReadInfo());
        if (!number)
            read =
                Bad(QStringLiteral("%1 is not a whole 16-bit number").arg(QLatin1StringView(what)));
        return number.value_or(0);
    }

    int ReadIndex(Result &read)
    {
        const int index = ReadNumber("An index", read);
        if (!read.Failed() && (index < 0 || index >= MdSequenceEdition::Capacity))
            read = Bad(QStringLiteral("There is no record %1").arg(index));
        return index;
    }

    QByteArray ReadSequence(Result &read)
    {
        if (read.Failed())
            return {};
        const auto sequence = DecimalListToSeq(m_fields.ReadInfo());
        if (!sequence)
            read = Bad(QStringLiteral("A byte is not in the range 0 to 255"));
        return sequence.value_or(QByteArray());
    }

    /// What was read last makes no sense.
    Failure Bad(const QString &cause) const
    {
        return LineFailure(QStringLiteral("Errow while loading the project"), m_fields.Line(),
                           cause);
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
    qsizetype m_versionLine = 0;
};

void WriteLine(QByteArray &file, QByteArrayView text)
{
    file += text;
    file += "\r\n";
}

void WriteSend(QByteArray &file, int index, const SendSequence &record)
{
    WriteLine(file, SendKeyword);
    WriteLine(file, QByteArray::number(index));
    WriteLine(file, record.Name);
    WriteLine(file, Common_Function::SeqToDecimalList(record.Sequence));
    WriteLine(file, {});
}

void WriteReceive(QByteArray &file, int index, const ReceiveSequence &record)
{
    WriteLine(file, ReceiveKeyword);
    WriteLine(file, QByteArray::number(index));
    WriteLine(file, record.Name);
    WriteLine(file, Common_Function::SeqToDecimalList(record.Sequence));
    WriteLine(file, QByteArray::number(record.Answer));
    WriteLine(file, QByteArray::number(record.Active));
    file += CommentKeyword;
    file += ' ';
    WriteLine(file, record.Comment);
    WriteLine(file, {});
}

} // namespace

namespace ProjectFile
{

QString PathOf(const QString &folder, const QString &name)
{
    return folder + name + QStringLiteral(".sqx");
}

/// Looks at the size after each record, for all records together may not fit into the memory.
std::optional<QByteArray> Written(const MdSequenceEdition &sequences)
{
    QByteArray file;
    WriteLine(file, VersionKeyword);
    WriteLine(file, QByteArray::number(WrittenVersion));
    WriteLine(file, {});
    const auto fits = [&file] { return file.size() <= ClInputFile::MaxSize; };
    for (int i = 0; i < sequences.SendCount() && fits(); ++i)
        WriteSend(file, i, sequences.SendAt(i));
    for (int i = 0; i < sequences.ReceiveCount() && fits(); ++i)
        WriteReceive(file, i, sequences.ReceiveAt(i));
    return fits() ? std::optional(std::move(file)) : std::nullopt;
}

Result SaveProject(const MdSequenceEdition &sequences, OpenFiles &files, const QString &path)
{
    const std::optional<QByteArray> content = Written(sequences);
    if (!content)
        return TooLarge();
    ClOutputFile file(files);
    if (const Result opened = file.OpenForReplacing(path); opened.Failed())
        return SaveFailure(opened);
    file.WriteInFile(*content);
    if (const Result saved = file.Commit(); saved.Failed())
        return SaveFailure(saved);
    return {};
}

Result LoadProject(MdSequenceEdition &sequences, OpenFiles &files, const QString &path)
{
    sequences.ClearProject();
    files.System().Tidy(path);
    ClInputFile file(files);
    if (const Result opened = file.OpenFile(path); opened.Failed())
        return LoadFailure(opened);
    return ReadProject(sequences, file.Fields());
}

Result ReadProject(MdSequenceEdition &sequences, FieldReader &fields)
{
    const MdSequenceEdition::Change change(sequences);
    sequences.ClearProject();
    return RecordReader(sequences, fields).ReadAll();
}

} // namespace ProjectFile
