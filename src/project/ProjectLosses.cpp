// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ProjectLosses.h"

#include "FieldReader.h"
#include "MdSequenceEdition.h"
#include "NamedSequences.h"
#include "ProjectFile.h"

#include <utility>

namespace
{

/// What has become of a sequence that was saved and read again.
struct Loss {
    bool ofSend = false; ///< it is a send sequence
    int index = 0;
    bool lost = true;        ///< nothing stands in its place
    bool becameZero = false; ///< it had no bytes and has one byte 0 now
    QByteArray name{};       ///< as read
    QByteArray comment{};    ///< likewise
    QStringList others{};    ///< fields that are others than they were
};

using Fields = QList<std::pair<const char *, bool>>;

Fields ComparedFields(const SendSequence &was, const SendSequence &is)
{
    return {{"name", was.Name == is.Name}, {"bytes", was.Sequence == is.Sequence}};
}

Fields ComparedFields(const ReceiveSequence &was, const ReceiveSequence &is)
{
    return {{"name", was.Name == is.Name},
            {"bytes", was.Sequence == is.Sequence},
            {"answer", was.Answer == is.Answer},
            {"active state", was.Active == is.Active},
            {"comment", was.Comment == is.Comment}};
}

QByteArray CommentOf(const SendSequence &)
{
    return {};
}

QByteArray CommentOf(const ReceiveSequence &record)
{
    return record.Comment;
}

template <typename Record> Loss LossOf(Record was, const Record &is, Loss place)
{
    place.lost = false;
    place.becameZero = was.Sequence.isEmpty() && is.Sequence == QByteArray(1, '\0');
    if (place.becameZero)
        was.Sequence = is.Sequence; // this has nothing to do with the other fields
    place.name = is.Name;
    place.comment = CommentOf(is);
    for (const auto &[field, same] : ComparedFields(was, is)) {
        if (!same)
            place.others << QString::fromLatin1(field);
    }
    return place;
}

/// With more than two bytes a sequence is read as with two, but it takes longer.
template <typename Record> Record Shortened(Record record)
{
    record.Sequence.truncate(2);
    return record;
}

/// In the order of the file.
QList<Loss> LossesOf(const MdSequenceEdition &sequences)
{
    MdSequenceEdition saved;
    for (int i = 0; i < sequences.SendCount(); ++i)
        saved.AddSend(Shortened(sequences.SendAt(i)));
    for (int i = 0; i < sequences.ReceiveCount(); ++i)
        saved.AddReceive(Shortened(sequences.ReceiveAt(i)));
    FieldReader fields(ProjectFile::Written(saved).value_or(QByteArray()));
    MdSequenceEdition read;
    // Where reading ends early, what is missing tells enough.
    ProjectFile::ReadProject(read, fields).Ignore();
    QList<Loss> losses;
    const auto add = [&losses](const Loss &loss) {
        if (loss.lost || loss.becameZero || !loss.others.isEmpty())
            losses << loss;
    };
    for (int i = 0; i < saved.SendCount(); ++i) {
        const Loss place = {true, i};
        add(i < read.SendCount() ? LossOf(saved.SendAt(i), read.SendAt(i), place) : place);
    }
    for (int i = 0; i < saved.ReceiveCount(); ++i) {
        const Loss place = {false, i};
        add(i < read.ReceiveCount() ? LossOf(saved.ReceiveAt(i), read.ReceiveAt(i), place) : place);
    }
    return losses;
}

// --- One sequence -------------------------------------------------------------------------------

/// What has become of the one sequence in the tables, saved with one behind it in each list.
struct Trial {
    Loss own = {.lost = false};
    bool othersLost = false;
};

Trial TryOut(MdSequenceEdition &tables)
{
    const bool ofSend = tables.SendCount() > 0;
    tables.AddSend({"behind", "x", {}});
    tables.AddReceive({"behind", "x"});
    Trial trial;
    for (const Loss &loss : LossesOf(tables)) {
        if (loss.ofSend == ofSend && loss.index == 0)
            trial.own = loss;
        else
            trial.othersLost = true;
    }
    return trial;
}

QString Sentence(const QString &reason, const QString &what)
{
    return QStringLiteral("Because of %1, opening the saved project %2.").arg(reason, what);
}

/// Without the blanks in front.
QByteArrayView Start(QByteArrayView text)
{
    while (text.startsWith(' '))
        text = text.sliced(1);
    return text;
}

/// The worst that stands in a name.
QString Reason(QByteArrayView name)
{
    QByteArrayView unquoted = Start(name);
    const bool quoted = unquoted.startsWith('"');
    if (quoted)
        unquoted = unquoted.sliced(unquoted.indexOf('"', 1));
    if (unquoted.contains(','))
        return QStringLiteral("the comma");
    if (unquoted.contains('\r') || unquoted.contains('\n'))
        return QStringLiteral("the line end");
    return quoted ? QStringLiteral("the double quote in front")
                  : QStringLiteral("the blank in front");
}

/// "behind" is what the file holds behind the sequence.
QString NameSentence(QByteArrayView name, const Trial &trial, const QString &behind)
{
    const QByteArrayView start = Start(name);
    if (start.startsWith('"') && start.lastIndexOf('"') == 0) {
        return QStringLiteral("The double quote in front takes all that follows in the saved file, "
                              "up to the next double quote, into this name.");
    }
    if (trial.own.lost)
        return Sentence(Reason(name), QStringLiteral("loses this sequence and ") + behind);
    if (trial.othersLost)
        return Sentence(Reason(name), QStringLiteral("loses ") + behind);
    QStringList others = trial.own.others;
    if (others.isEmpty())
        return {};
    others.removeOne(QStringLiteral("name"));
    const QString with = others.isEmpty() ? QString() : QStringLiteral(", with other ");
    return Sentence(Reason(name), QStringLiteral("gives the name ") +
                                      NamedSequences::Quoted(trial.own.name) + with +
                                      others.join(QStringLiteral(", ")));
}

} // namespace

namespace ProjectLosses
{

QString OfName(const SendSequence &record)
{
    MdSequenceEdition tables;
    tables.AddSend(record);
    return NameSentence(record.Name, TryOut(tables),
                        QStringLiteral("those behind it, all receive sequences too"));
}

QString OfName(const ReceiveSequence &record)
{
    ReceiveSequence tried = record;
    if (!record.Comment.isEmpty())
        tried.Comment = "x"; // what a comment does itself is another sentence
    MdSequenceEdition tables;
    tables.AddReceive(tried);
    return NameSentence(record.Name, TryOut(tables), QStringLiteral("those behind it"));
}

QString OfComment(const ReceiveSequence &record)
{
    const QByteArray &comment = record.Comment;
    MdSequenceEdition tables;
    tables.AddReceive({.Name = "x", .Sequence = "x", .Comment = comment});
    const Trial trial = TryOut(tables);
    const QString reason =
        comment.contains(',') ? QStringLiteral("the comma") : QStringLiteral("the line end");
    if (trial.othersLost)
        return Sentence(reason, QStringLiteral("loses the sequences behind this one"));
    if (trial.own.others.isEmpty())
        return {};
    return Sentence(reason, QStringLiteral("gives the comment ") +
                                NamedSequences::Quoted(trial.own.comment));
}

QString OfProject(const MdSequenceEdition &sequences)
{
    QStringList lines;
    for (const Loss &loss : LossesOf(sequences)) {
        QStringList what;
        if (loss.lost)
            what << QStringLiteral("lost");
        if (!loss.others.isEmpty())
            what << QStringLiteral("other ") + loss.others.join(QStringLiteral(", "));
        if (loss.becameZero)
            what << QStringLiteral("one byte 0 in place of no bytes");
        const QByteArray &name =
            loss.ofSend ? sequences.SendAt(loss.index).Name : sequences.ReceiveAt(loss.index).Name;
        lines << (loss.ofSend ? QStringLiteral("Send sequence ")
                              : QStringLiteral("Receive sequence ")) +
                     NamedSequences::Title(loss.index, name) + QStringLiteral(": ") +
                     what.join(QStringLiteral("; "));
    }
    if (lines.isEmpty())
        return {};
    return QStringLiteral("The project is saved, but these sequences will not come back as they "
                          "are when it is opened again. The editor of the first one tells why.\n") +
           NamedSequences::Listed(lines);
}

} // namespace ProjectLosses
