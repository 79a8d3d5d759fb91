// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RecoveryFolder.h"

#include <functional>

class MdProject;
class MdSequenceEdition;
class UserPrompts;
enum class PromptAnswer;
struct ProjectState;
struct RunState;
struct UnsavedProject;

/// What the recovery works with; all of it lives longer than ProjectRecovery.
struct RecoveryParts {
    const ProjectState &state;
    const MdSequenceEdition &sequences;
    MdProject &project;
    RecoveryFolder &folder;
    UserPrompts &prompts;
    const RunState &run;
};

/// Keeps the changes of a project that the system does not let the user save, and offers at the
/// next start what a program left behind. A program has one such file at most.
class ProjectRecovery
{
  public:
    explicit ProjectRecovery(const RecoveryParts &parts) : m_parts(parts) {}

    /// Writes the project into the recovery file if it is modified and the user has not said yet
    /// what is to become of that. Asks nothing; a failure is told without waiting.
    void Keep();

    /// The project has been saved or given up.
    void Drop();

    /// The end did not come. What the user had back from an earlier one stays nevertheless.
    void GoOn();

    /// Offers the latest project that was left behind, if there is one. Returns at once; settled
    /// is called when nothing is left to be answered.
    void Offer(const std::function<void()> &settled);

  private:
    void OfferNext();
    void Answer(PromptAnswer answer, const UnsavedProject &project,
                std::unique_ptr<RecoveryFolder::File> file);
    void RemoveOthersOf(const QByteArray &text);
    void TellFailure(const QString &what, const QString &cause);

    RecoveryParts m_parts;
    std::function<void()> m_settled;
    std::unique_ptr<RecoveryFolder::File> m_file; ///< of the project as it was last kept
    QByteArray m_text;                            ///< what the file holds
    bool m_restored = false;                      ///< the project came from such a file
};
