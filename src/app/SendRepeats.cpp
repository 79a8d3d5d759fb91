// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SendRepeats.h"

#include "CodePage1252.h"
#include "MdCommunication.h"
#include "MdSequenceEdition.h"
#include "RepeatText.h"
#include "SQSendSequenceList.h"
#include "frmRepeat.h"

#include <QCoreApplication>
#include <QKeyEvent>

#include <algorithm>
#include <utility>

namespace
{

bool IsOf(const RepeatState &repeat, const SendSequence &record)
{
    return repeat.telegram.bytes == record.Sequence && repeat.telegram.name == record.Name;
}

} // namespace

SendRepeats::SendRepeats(SendRepeatParts parts) : m_parts(std::move(parts))
{
    connect(&m_parts.ActionList, &SQSendSequenceList::RepeatRequested, this, &SendRepeats::Ask);
    connect(&m_parts.ActionList, &SQSendSequenceList::StopRequested, this, &SendRepeats::Stop);
    connect(&m_parts.communication, &MdCommunication::RepeatsChanged, this, &SendRepeats::Show);
    m_watch = m_parts.sequences.Watch([this] { EndOrphans(); });
    Show();
}

void SendRepeats::Ask(int index)
{
    // A copy: the project may change while the dialog stands.
    const SendSequence record = m_parts.sequences.SendAt(index);
    frmRepeat dialog(CodePage1252::ToUnicode(record.Name), m_plan, m_parts.ActionList.window());
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_plan = dialog.Plan();
    m_own << m_parts.communication.Repeat({record.Sequence, record.Name, m_plan});
    Show();
}

void SendRepeats::Stop(int index)
{
    const SendSequence record = m_parts.sequences.SendAt(index);
    for (const RepeatState &repeat : m_parts.communication.Repeats()) {
        if (m_own.contains(repeat.id) && IsOf(repeat, record))
            m_parts.communication.EndRepeat(repeat.id);
    }
}

/// What the tables do not hold any more is not sent on; the rows of others may have moved.
void SendRepeats::EndOrphans()
{
    const QList<RepeatState> repeats = m_parts.communication.Repeats();
    if (repeats.isEmpty())
        return;
    for (const RepeatState &repeat : repeats) {
        bool listed = false;
        for (int i = 0; i < m_parts.sequences.SendCount(); ++i)
            listed = listed || IsOf(repeat, m_parts.sequences.SendAt(i));
        if (!listed && m_own.contains(repeat.id))
            m_parts.communication.EndRepeat(repeat.id);
    }
    Show();
}

void SendRepeats::Show()
{
    const QList<RepeatState> repeats = m_parts.communication.Repeats();
    QHash<int, QString> rows;
    for (const RepeatState &repeat : repeats) {
        for (int i = 0; m_own.contains(repeat.id) && i < m_parts.sequences.SendCount(); ++i) {
            if (IsOf(repeat, m_parts.sequences.SendAt(i)))
                rows[i] = RepeatText(repeat.telegram.plan);
        }
    }
    m_parts.ActionList.SetRepeating(rows);
    m_parts.enableStop(!repeats.isEmpty());
    if (repeats.isEmpty()) {
        m_own.clear();
        qApp->removeEventFilter(this);
    } else {
        qApp->installEventFilter(this);
    }
}

bool SendRepeats::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(event)->keyCombination() == QKeyCombination(Qt::Key_F8)) {
        m_parts.communication.EndRepeats();
        return true;
    }
    return QObject::eventFilter(watched, event);
}
