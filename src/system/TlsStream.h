// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RemoteStream.h"
#include "TlsSession.h"

#include <memory>

struct RemoteAddress;

/// A connection over TLS, on a descriptor that its owner waits for: what came is decoded in the
/// call that takes it.
class TlsStream final : public RemoteStream
{
  public:
    TlsStream(Descriptor socket, const RemoteAddress &address);

    /// Reads the files that the address names, and makes ready. Before all else.
    Result Begin();

    /// Goes on with agreeing upon keys and with the check of the certificate, until Done or Failed.
    TlsSession::Step Agree() { return m_session->Agree(); }
    /// Why that failed.
    const Result &Agreement() const { return m_session->Agreement(); }

    qsizetype Receive(char *bytes, size_t most) override;
    qsizetype Transmit(const char *bytes, qsizetype count) override;
    void Finish() override { m_session->Finish(); }

  private:
    qsizetype Note(const TlsSession::Passage &passage);

    const TlsRequest m_request;
    std::unique_ptr<TlsSession> m_session;
};
