// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class MdSequenceEdition;

/// What a deletion has changed about sequences that were not deleted, in a message for the user:
/// answers and Active flags go by place, and places move up. Empty if nothing is another.
namespace DeletionEffects
{

/// The tables before and after the send sequence at CurrentSendIndex was deleted.
QString OnAnswers(const MdSequenceEdition &before, const MdSequenceEdition &now);
/// The tables before and after the receive sequence at CurrentReceiveIndex was deleted.
QString OnActive(const MdSequenceEdition &before, const MdSequenceEdition &now);

} // namespace DeletionEffects
