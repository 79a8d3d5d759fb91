// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "app/DemoProject.h"

#include "platform/DemoProtocol.h"
#include "sequences/MdSequenceEdition.h"

using DemoProtocol::Text;

namespace
{

struct SendRow {
    const char *name;
    Text text;
};

constexpr SendRow SendRows[] = {
    {"Identification request", Text::IdentificationRequest},
    {"Measurement request", Text::MeasurementRequest},
    {"Status request", Text::StatusRequest},
    {"Answer: yes", Text::Yes},
};

constexpr qint16 NoAnswer = 0;
constexpr qint16 AnswerYes = 4; ///< the place of the last row above, counted from 1

struct ReceiveRow {
    const char *name;
    QByteArray sequence;
    const char *comment;
    qint16 answer;
    qint16 active;
};

ReceiveSequence RecordOf(const ReceiveRow &row)
{
    ReceiveSequence record;
    record.Name = row.name;
    record.Sequence = row.sequence;
    record.Answer = row.answer;
    record.Comment = row.comment;
    record.CommentToLog = 1;
    record.Active = row.active;
    return record;
}

} // namespace

void FillDemoProject(MdSequenceEdition &sequences)
{
    sequences.ClearProject();
    int count = 0;
    for (const SendRow &row : SendRows)
        sequences.EditSend(count++) = {row.name, DemoProtocol::BytesOf(row.text), {}};
    sequences.SetSendCount(count);

    const ReceiveRow receiveRows[] = {
        {"Question, answered by itself", DemoProtocol::BytesOf(Text::Question),
         "[the instrument asks and gets its answer]", AnswerYes, 1},
        {"Acknowledgement", DemoProtocol::BytesOf(Text::Acknowledgement), "[acknowledged]",
         NoAnswer, 1},
        {"Identification", DemoProtocol::BytesOf(Text::Identification),
         "[the instrument has named itself]", NoAnswer, 1},
        {"Reading (not active)", "T=", "[a reading]", NoAnswer, 0},
    };
    count = 0;
    for (const ReceiveRow &row : receiveRows) {
        sequences.EditReceive(count) = RecordOf(row);
        sequences.RefreshAnswerName(count++);
    }
    sequences.SetReceiveCount(count);
}
