// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QPointer>
#include <QString>

class MdSequenceEdition;
class OpenFiles;
class QWidget;
class Result;
class UserPrompts;
class frmJudgement;
struct ProjectState;

/// What judging works with; all of it lives longer than CaptureJudging.
struct CaptureJudgingParts {
    const MdSequenceEdition &sequences;
    const ProjectState &project;
    QString &folder; ///< of captures, with trailing separator; empty before the first one
    OpenFiles &files;
    UserPrompts &prompts;
};

/// The command "Judge Capture...": asks for a capture, judges it by the sequences of the project on
/// a thread of its own, and shows what came of it. Communication goes on meanwhile.
class CaptureJudging
{
  public:
    explicit CaptureJudging(CaptureJudgingParts parts) : m_parts(parts) {}

    /// The window lies over the owner, with which it goes. A new judgement takes the place of the
    /// one before.
    void Judge(QWidget &owner);
    /// The same for a capture that is known.
    void Judge(const QString &path, QWidget &owner);

    /// The program ended while a file system stood still; nothing may wait for the thread.
    bool Hangs() const { return m_hangs; }

  private:
    QString ChooseCapture() const;
    void SaveReport(const QString &capture, const QString &report);
    QString ChooseReport(const QString &capture) const;
    void Tell(const QString &text, const QString &path, const Result &failed) const;

    CaptureJudgingParts m_parts;
    QPointer<frmJudgement> m_window;
    bool m_hangs = false;
};
