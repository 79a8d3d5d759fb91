// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdSequenceEdition.h"

#include <algorithm>
#include <utility>

namespace
{

/// Records that clearing and shifting touch: those in use and the empty one behind them, as far
/// as the table goes.
int TouchedRecords(int count)
{
    return std::min(count + 1, MdSequenceEdition::Capacity);
}

} // namespace

QString MdSequenceEdition::FullTableText()
{
    return QStringLiteral("A project cannot hold more than %1 send and %1 receive sequences.")
        .arg(Capacity);
}

std::shared_ptr<void> MdSequenceEdition::Watch(std::function<void()> changed)
{
    auto watcher = std::make_shared<std::function<void()>>(std::move(changed));
    m_watchers.push_back(watcher);
    return watcher;
}

void MdSequenceEdition::EndChange()
{
    if (--m_changes > 0 || m_revision == m_toldRevision)
        return;
    m_toldRevision = m_revision;
    std::erase_if(m_watchers, [](const auto &watcher) { return watcher.expired(); });
    for (const auto &watcher : m_watchers) {
        if (const auto changed = watcher.lock())
            (*changed)();
    }
}

void MdSequenceEdition::SetSendCount(int count)
{
    m_sendCount = std::clamp(count, 0, Capacity);
    ++m_revision;
}

void MdSequenceEdition::SetReceiveCount(int count)
{
    m_receiveCount = std::clamp(count, 0, Capacity);
    ++m_revision;
}

SendSequence &MdSequenceEdition::EditSend(int index)
{
    ++m_revision;
    return m_send[size_t(index)];
}

ReceiveSequence &MdSequenceEdition::EditReceive(int index)
{
    ++m_revision;
    return m_receive[size_t(index)];
}

bool MdSequenceEdition::AddSend(const SendSequence &record)
{
    if (m_sendCount >= Capacity)
        return false;
    LoadSend(m_sendCount, record);
    return true;
}

bool MdSequenceEdition::AddReceive(const ReceiveSequence &record)
{
    if (m_receiveCount >= Capacity)
        return false;
    LoadReceive(m_receiveCount, record);
    return true;
}

void MdSequenceEdition::StoreSend(int index, const SendSequence &record)
{
    const Change change(*this);
    EditSend(index) = record;
    SetSendCount(std::max(m_sendCount, index + 1));
}

void MdSequenceEdition::StoreReceive(int index, const ReceiveSequence &record)
{
    const Change change(*this);
    EditReceive(index) = record;
    SetReceiveCount(std::max(m_receiveCount, index + 1));
}

void MdSequenceEdition::LoadSend(int index, const SendSequence &record)
{
    const Change change(*this);
    EditSend(index) = record;
    SetSendCount(m_sendCount + 1);
}

void MdSequenceEdition::LoadReceive(int index, const ReceiveSequence &record)
{
    const Change change(*this);
    EditReceive(index) = record;
    SetReceiveCount(m_receiveCount + 1);
}

void MdSequenceEdition::ClearProject()
{
    const Change change(*this);
    for (int i = 0; i < TouchedRecords(m_sendCount); ++i) {
        SendSequence &record = EditSend(i);
        record.Name.clear();
        record.Sequence.clear();
    }
    for (int i = 0; i < TouchedRecords(m_receiveCount); ++i) {
        ReceiveSequence &record = EditReceive(i);
        record.Name.clear();
        record.Sequence.clear();
        record.AnswerName.clear();
        record.Answer = 0;
        record.Active = 1;
    }
    SetSendCount(0);
    SetReceiveCount(0);
    CurrentSendIndex = 0;
    CurrentReceiveIndex = 0;
}

void MdSequenceEdition::DeleteSendSequence()
{
    const Change change(*this);
    if (CurrentSendIndex < 0 || CurrentSendIndex >= m_sendCount)
        return;
    const int touched = TouchedRecords(m_sendCount);
    std::move(m_send.begin() + CurrentSendIndex + 1, m_send.begin() + touched,
              m_send.begin() + CurrentSendIndex);
    EditSend(touched - 1) = {};
    SetSendCount(m_sendCount - 1);
}

void MdSequenceEdition::DeleteReceiveSequence()
{
    const Change change(*this);
    if (CurrentReceiveIndex < 0 || CurrentReceiveIndex >= m_receiveCount)
        return;
    const int touched = TouchedRecords(m_receiveCount);
    for (int i = CurrentReceiveIndex; i + 1 < touched; ++i) {
        const qint16 activeOfPlace = ReceiveAt(i).Active;
        EditReceive(i) = std::move(m_receive[size_t(i) + 1]);
        EditReceive(i).Active = activeOfPlace;
    }
    EditReceive(touched - 1) = {};
    EditReceive(m_receiveCount - 1).Active = 1; // the place that has become empty
    SetReceiveCount(m_receiveCount - 1);
}

void MdSequenceEdition::ActivateAll()
{
    const Change change(*this);
    for (int i = 0; i < Capacity; ++i)
        EditReceive(i).Active = 1;
}

void MdSequenceEdition::RefreshAnswerNames()
{
    const Change change(*this);
    for (int i = 0; i < m_receiveCount; ++i)
        RefreshAnswerName(i);
}

void MdSequenceEdition::RefreshAnswerName(int receiveIndex)
{
    const Change change(*this);
    const SendSequence *answer = AnswerOf(ReceiveAt(receiveIndex));
    const QByteArray name = answer ? answer->Name : QByteArray();
    if (ReceiveAt(receiveIndex).AnswerName != name)
        EditReceive(receiveIndex).AnswerName = name;
}

const SendSequence *MdSequenceEdition::AnswerOf(const ReceiveSequence &record) const
{
    const int index = record.Answer - 1;
    return index >= 0 && index < Capacity ? &SendAt(index) : nullptr;
}
