// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

/// Tells what the desktop's session manager wants of the program. It wants data to be saved also
/// without an end in sight, and before an end that another program may still prevent; only when it
/// says so does the session end. One instance, made after the application.
class SessionWatch final : public QObject
{
    Q_OBJECT

  public:
    SessionWatch();
    ~SessionWatch() override;

  Q_SIGNALS:
    /// The program may be ended soon, without being asked again.
    void SavingWanted();
    /// It will not: the end of the session has been cancelled, or there was none in sight.
    void GoesOn();
    /// The program has to end now.
    void Ending();
    /// The display or the session manager has gone, and with it the toolkit ends the program: it
    /// runs until this returns.
    void Lost();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void NoteSaving();
    void NoteWord();

    bool m_saved = false; ///< what the manager wanted was done; it has not spoken since
    bool m_spoken = false;
};
