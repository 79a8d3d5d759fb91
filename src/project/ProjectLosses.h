// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

class MdSequenceEdition;
struct ReceiveSequence;
struct SendSequence;

/// What a project file does not give back of what was saved: it has no way to write some
/// characters so that they can be read again. All of it is found out by writing and reading, in
/// memory, and told in a text for the user, which is empty if nothing is lost.
namespace ProjectLosses
{

/// One sentence about what a name does when its sequence is saved. The other fields count as far as
/// they decide that.
QString OfName(const SendSequence &record);
QString OfName(const ReceiveSequence &record);
QString OfComment(const ReceiveSequence &record);

/// A message that names the sequences which will not come back as they are.
QString OfProject(const MdSequenceEdition &sequences);

} // namespace ProjectLosses
