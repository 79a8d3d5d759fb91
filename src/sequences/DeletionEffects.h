// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SendSequence.h"

#include <QList>
#include <QString>

class MdSequenceEdition;

/// Remembers, before a sequence is deleted, what goes by the places that others will move into: the
/// answers and the Active flags of the receive sequences. Afterwards it tells the user which of
/// them are others; nothing if none is.
class DeletionEffects final
{
  public:
    /// The tables live longer.
    explicit DeletionEffects(const MdSequenceEdition &sequences);

    /// After the send sequence at CurrentSendIndex was deleted.
    QString OnAnswers() const;
    /// After the receive sequence at CurrentReceiveIndex was deleted.
    QString OnActive() const;

  private:
    const MdSequenceEdition &m_sequences;
    QList<SendSequence> m_answers; ///< by receive sequence; without a name for none
    QList<bool> m_active;          ///< likewise
};
