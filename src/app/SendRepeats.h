// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RepeatSchedule.h"

#include <QObject>
#include <QSet>

#include <functional>
#include <memory>

class MdCommunication;
class MdSequenceEdition;
class SQSendSequenceList;

/// What repeats are started with in the send list, and how that is seen there; all of it lives
/// longer than SendRepeats.
struct SendRepeatParts {
    MdCommunication &communication;
    MdSequenceEdition &sequences;
    SQSendSequenceList &ActionList;
    /// Enables the command that ends all repeats.
    std::function<void(bool)> enableStop;
};

/// The repeats of the send list: starts and ends them, and marks their rows. A repeat belongs to
/// the sequence as it was when it began: it ends when the sequence is changed, deleted or replaced
/// by another project, for then no row would tell what is being sent.
class SendRepeats final : public QObject
{
    Q_OBJECT

  public:
    explicit SendRepeats(SendRepeatParts parts);

    /// Of all windows, the key that ends all repeats works while something is repeated, also where
    /// a dialog keeps the menus away.
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void Ask(int index);
    void Stop(int index);
    void EndOrphans();
    void Show();

    SendRepeatParts m_parts;
    std::shared_ptr<void> m_watch; ///< of the tables
    RepeatPlan m_plan;             ///< what was chosen last
    QSet<int> m_own;               ///< started here
};
