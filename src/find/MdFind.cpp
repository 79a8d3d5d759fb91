// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdFind.h"

#include "CommunicationViews.h"
#include "MdSequenceEdition.h"
#include "SequenceText.h"
#include "UserPrompts.h"

#include <array>

namespace
{

constexpr std::array<const char *, FindKindCount> FinishedTexts = {
    "Finished searching for send sequence", "Finished searching for receive sequence",
    "Finished searching for user defined sequence"};

/// Tells the end of a search from one that had nothing to find.
QString FinishedNote(bool above, Representation shown)
{
    const QLatin1String view(RowOf(shown).caption);
    return above ? QStringLiteral("No more from here to the end of the %1 view; the next search "
                                  "begins at its top.")
                       .arg(view)
                 : QStringLiteral("Not found anywhere in the %1 view.").arg(view);
}

} // namespace

MdFind::MdFind(const MdSequenceEdition &sequences, CommunicationViews &views, UserPrompts &prompts)
    : m_sequences(sequences), m_views(views), m_prompts(prompts)
{
}

Representation MdFind::ShownView() const
{
    return m_views.DisplayedRepresentation;
}

std::optional<QByteArray> MdFind::SequenceAt(FindKind list, int index) const
{
    const bool send = list == FindKind::Send;
    if (index < 1 || index > (send ? m_sequences.SendCount() : m_sequences.ReceiveCount()))
        return {};
    return send ? m_sequences.SendAt(index - 1).Sequence
                : m_sequences.ReceiveAt(index - 1).Sequence;
}

std::optional<QByteArray> MdFind::ChosenSequence() const
{
    if (FindTab != FindKind::Defined)
        return SequenceAt(FindTab, FindTab == FindKind::Send ? FindSendIndex : FindReceiveIndex);
    if (FindDefinedSequence.isEmpty())
        return {};
    return FindDefinedSequence;
}

bool MdFind::FindNext(FindKind kind, QByteArrayView sequence)
{
    const Representation shown = m_views.DisplayedRepresentation;
    // Byte 0 stands as another character in the ASCII view, so it is not found there.
    const QByteArray text = SequenceText::Of(sequence, shown);
    RichTextModel &view = m_views.View(shown);
    const qint64 hit = view.Find(text, m_views.CaretPosition);
    if (hit < 0) {
        const bool above = view.Find(text, view.Begin()) >= 0;
        m_prompts.ShowMessage({.text = QString::fromLatin1(FinishedTexts[size_t(kind)]),
                               .icon = PromptIcon::Exclamation,
                               .caption = Caption(),
                               .note = FinishedNote(above, shown)});
        m_views.CaretPosition = 0;
        return false;
    }
    view.Select(hit, hit + text.size());
    m_views.CaretPosition = hit + 1;
    return true;
}
