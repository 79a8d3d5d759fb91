// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RemoteStream.h"

#include <memory>

struct RemoteAddress;
struct ssl_st;
struct ssl_ctx_st;

/// A connection over TLS, on a descriptor that its owner waits for: what came is decoded in the
/// call that takes it.
class TlsStream final : public RemoteStream
{
  public:
    TlsStream(Descriptor socket, const RemoteAddress &address);
    ~TlsStream() override;
    Q_DISABLE_COPY_MOVE(TlsStream)

    /// Reads the files that the address names, and makes ready. Before all else.
    Result Begin();

    enum class Step { Done, WantsToRead, WantsToWrite, Failed };
    /// Goes on with agreeing upon keys and with the check of the certificate, until Done or Failed.
    Step Agree();
    /// Why that failed.
    const Result &Agreement() const { return m_agreement; }

    qsizetype Receive(char *bytes, size_t most) override;
    qsizetype Transmit(const char *bytes, qsizetype count) override;
    void Finish() override;

  private:
    struct Free {
        void operator()(ssl_st *tls) const;
        void operator()(ssl_ctx_st *context) const;
    };

    Result TakeAuthority(const QString &file);
    Result TakeCertificate(const QString &certificate, const QString &key);
    bool ExpectHost(const QString &host);
    QString Complaint() const;
    qsizetype Judge(int result);

    const std::unique_ptr<const RemoteAddress> m_address;
    std::unique_ptr<ssl_ctx_st, Free> m_context;
    std::unique_ptr<ssl_st, Free> m_tls;
    Result m_agreement;
};
