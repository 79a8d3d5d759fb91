// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Judgement.h"
#include "NearMissFinder.h"
#include "WatchSnapshot.h"

class MdSequenceEdition;
class WorkProgress;

/// Runs the receive sequences of a project over a capture, as if its lines were read now: the same
/// detection, each direction with a memory of its own, what was sent not judged. Memory is bounded,
/// whatever the capture's size.
class CaptureJudge final
{
  public:
    enum class NearMisses { Find, LeaveOut };

    /// Keeps copies of all that it needs. Answers are known by name; see
    /// MdSequenceEdition::RefreshAnswerNames.
    explicit CaptureJudge(const MdSequenceEdition &tables,
                          NearMisses nearMisses = NearMisses::Find);

    struct Judged {
        Judgement judgement;
        Result result; ///< fails if the file is no capture of serial lines
    };
    /// May be called on any thread. A damaged capture is judged up to the damage, one whose judging
    /// was cancelled up to that point.
    Judged Judge(const InputDevice &file, WorkProgress &progress) const;

  private:
    WatchSnapshot m_watch;
    std::vector<JudgedSequence> m_sequences;
    NearMissFinder m_finder;
    NearMisses m_nearMisses;
};
