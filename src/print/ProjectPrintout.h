// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ReceiveSequence.h"
#include "Result.h"
#include "SendSequence.h"

#include <QList>
#include <QString>

class ClMyPrinter;
class MdSequenceEdition;
class WorkProgress;

/// All that the printout of a project says, as it was when this was made: what becomes of the
/// project afterwards changes nothing. May be printed by another thread.
class ProjectPrintout final
{
  public:
    struct Header {
        QString title;
        QString path; ///< of the project, empty if it has none
    };

    /// The sequences are printed in the form of a representation, by its number.
    ProjectPrintout(Header header, const MdSequenceEdition &sequences, qint16 display);

    /// Prints all copies that the printer was chosen for in one job. One that fails is thrown away;
    /// so is one that is cancelled, which is no failure.
    Result PrintOn(ClMyPrinter &printer, WorkProgress &progress) const;

  private:
    class Copies;

    struct Watched {
        ReceiveSequence record;
        QByteArray answer; ///< the name of what is sent in response
    };

    Header m_header;
    QList<SendSequence> m_send;
    QList<Watched> m_receive;
    qint16 m_display;
};
