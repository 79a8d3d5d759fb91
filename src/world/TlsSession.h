// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QString>

/// Whom TLS is to be spoken with, who may certify that, and what is shown there.
struct TlsRequest {
    QString peer;          ///< as messages call the other side
    QString host;          ///< whose the certificate must be: a name or a number
    QString authority{};   ///< file that holds who may certify; empty: the system's own
    QString certificate{}; ///< files of this side's own certificate and its key; empty: none
    QString key{};
};

/// TLS on a socket that belongs to somebody else, who waits for it; no call waits. What implements
/// it is no part of the programs, but a module that is loaded when it is needed: the library behind
/// it costs megabytes, which most programs would never use.
class TlsSession
{
  public:
    enum class Step { Done, WantsToRead, WantsToWrite, Failed };
    enum class End { None, Closed, Lost };
    struct Passage {
        qsizetype count = 0; ///< of bytes; 0 is to come again, unless the connection has ended
        End end = End::None;
        QString cause{}; ///< of one that was lost
    };

    TlsSession() = default;
    virtual ~TlsSession() = default;
    Q_DISABLE_COPY_MOVE(TlsSession)

    /// Reads the files of the request, and makes ready. Before all else, once.
    virtual Result Begin(int socket, const TlsRequest &request) = 0;
    /// Goes on with agreeing upon keys and with the check of the certificate, until Done or Failed.
    virtual Step Agree() = 0;
    /// Why that failed.
    virtual const Result &Agreement() const = 0;

    /// Takes whole records, so that none waits where nobody looks for it; a call takes one at most.
    virtual Passage Receive(char *bytes, size_t most) = 0;
    virtual Passage Transmit(const char *bytes, qsizetype count) = 0;
    /// Tells the other side that nothing follows.
    virtual void Finish() = 0;
};

/// What the module exports, with C's linkage: a function that makes a session, which is the
/// caller's.
using TlsSessionMaker = TlsSession *();
inline constexpr const char *TlsSessionMakerName = "SerimondeTlsSession";
