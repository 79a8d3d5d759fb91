// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "UnsavedProject.h"

#include "FileName.h"
#include "MdSequenceEdition.h"
#include "ProjectState.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <iterator>
#include <limits>
#include <utility>

namespace
{

using namespace Qt::StringLiterals;

constexpr auto Format = "Serimonde unsaved project"_L1;
constexpr int Version = 1;

QString Hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

/// Takes values out of an object and notes whether all of them were what they must be.
class ObjectReader
{
  public:
    ObjectReader(const QJsonValue &value, bool &right) : m_object(value.toObject()), m_right(right)
    {
        m_right &= value.isObject();
    }

    QByteArray Bytes(QLatin1StringView key)
    {
        const QByteArray hex = m_object.value(key).toString().toLatin1();
        QByteArray bytes = QByteArray::fromHex(hex);
        m_right &= m_object.value(key).isString() && bytes.toHex() == hex;
        return bytes;
    }

    int Number(QLatin1StringView key, int least, int most)
    {
        const int number = m_object.value(key).toInt(least - 1);
        m_right &= number >= least && number <= most;
        return number;
    }

    qint16 Number(QLatin1StringView key)
    {
        using Limits = std::numeric_limits<qint16>;
        return qint16(Number(key, Limits::min(), Limits::max()));
    }

    QJsonArray Array(QLatin1StringView key)
    {
        m_right &= m_object.value(key).isArray();
        return m_object.value(key).toArray();
    }

  private:
    QJsonObject m_object;
    bool &m_right;
};

int ReadIndex(ObjectReader &object)
{
    return object.Number("index"_L1, 0, MdSequenceEdition::Capacity - 1);
}

QJsonArray SendArray(const std::map<int, SendSequence> &records)
{
    QJsonArray array;
    for (const auto &[index, record] : records) {
        array << QJsonObject{{"index"_L1, index},
                             {"name"_L1, Hex(record.Name)},
                             {"sequence"_L1, Hex(record.Sequence)}};
    }
    return array;
}

QJsonArray ReceiveArray(const std::map<int, ReceiveSequence> &records)
{
    QJsonArray array;
    for (const auto &[index, record] : records) {
        array << QJsonObject{{"index"_L1, index},
                             {"name"_L1, Hex(record.Name)},
                             {"sequence"_L1, Hex(record.Sequence)},
                             {"answer"_L1, record.Answer},
                             {"comment"_L1, Hex(record.Comment)},
                             {"commentToLog"_L1, record.CommentToLog},
                             {"active"_L1, record.Active}};
    }
    return array;
}

/// Whether every record in use is there.
template <typename Record> bool HasAll(const std::map<int, Record> &records, int count)
{
    return std::distance(records.begin(), records.lower_bound(count)) == count;
}

template <typename Record> bool IsWorthKeeping(const Record &record)
{
    return !record.Name.isEmpty() || !record.Sequence.isEmpty();
}

} // namespace

UnsavedProject UnsavedProject::Of(const MdSequenceEdition &sequences, const ProjectState &state)
{
    UnsavedProject project = {.folder = state.ProjectDirectory,
                              .name = state.ProjectFileName,
                              .sendCount = sequences.SendCount(),
                              .receiveCount = sequences.ReceiveCount()};
    for (int i = 0; i < MdSequenceEdition::Capacity; ++i) {
        if (i < project.sendCount || IsWorthKeeping(sequences.SendAt(i)))
            project.send[i] = sequences.SendAt(i);
        if (i < project.receiveCount || IsWorthKeeping(sequences.ReceiveAt(i)))
            project.receive[i] = sequences.ReceiveAt(i);
    }
    return project;
}

void UnsavedProject::PutInto(MdSequenceEdition &sequences) const
{
    const MdSequenceEdition::Change change(sequences);
    sequences.ClearProject();
    for (const auto &each : send) {
        if (each.first < sendCount)
            sequences.LoadSend(each.first, each.second);
        else
            sequences.ChangeSend(each.first, [&](SendSequence &record) { record = each.second; });
    }
    for (const auto &each : receive) {
        if (each.first < receiveCount)
            sequences.LoadReceive(each.first, each.second);
        else
            sequences.ChangeReceive(each.first,
                                    [&](ReceiveSequence &record) { record = each.second; });
    }
}

QByteArray UnsavedProject::ToText() const
{
    return QJsonDocument(QJsonObject{{"format"_L1, Format},
                                     {"version"_L1, Version},
                                     {"folder"_L1, Hex(FileName::Encode(folder))},
                                     {"name"_L1, Hex(FileName::Encode(name))},
                                     {"sendCount"_L1, sendCount},
                                     {"receiveCount"_L1, receiveCount},
                                     {"send"_L1, SendArray(send)},
                                     {"receive"_L1, ReceiveArray(receive)}})
        .toJson();
}

std::optional<UnsavedProject> UnsavedProject::FromText(const QByteArray &text)
{
    const QJsonObject whole = QJsonDocument::fromJson(text).object();
    bool right = whole["format"_L1] == Format && whole["version"_L1] == Version;
    ObjectReader reader(whole, right);
    UnsavedProject project = {
        .folder = FileName::Decode(reader.Bytes("folder"_L1)),
        .name = FileName::Decode(reader.Bytes("name"_L1)),
        .sendCount = reader.Number("sendCount"_L1, 0, MdSequenceEdition::Capacity),
        .receiveCount = reader.Number("receiveCount"_L1, 0, MdSequenceEdition::Capacity)};
    for (const auto &each : reader.Array("send"_L1)) {
        ObjectReader record(each, right);
        project.send[ReadIndex(record)] = {.Name = record.Bytes("name"_L1),
                                           .Sequence = record.Bytes("sequence"_L1)};
    }
    for (const auto &each : reader.Array("receive"_L1)) {
        ObjectReader record(each, right);
        project.receive[ReadIndex(record)] = {.Name = record.Bytes("name"_L1),
                                              .Sequence = record.Bytes("sequence"_L1),
                                              .Answer = record.Number("answer"_L1),
                                              .Comment = record.Bytes("comment"_L1),
                                              .CommentToLog = record.Number("commentToLog"_L1),
                                              .Active = record.Number("active"_L1)};
    }
    right &= HasAll(project.send, project.sendCount);
    right &= HasAll(project.receive, project.receiveCount);
    return right ? std::optional(std::move(project)) : std::nullopt;
}
