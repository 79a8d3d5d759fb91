// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TlsSession.h"

#include <memory>

struct ssl_st;
struct ssl_ctx_st;

/// The session that the module makes.
class OpenSslSession final : public TlsSession
{
  public:
    Result Begin(int socket, const TlsRequest &request) override;
    Step Agree() override;
    const Result &Agreement() const override { return m_agreement; }
    Passage Receive(char *bytes, size_t most) override;
    Passage Transmit(const char *bytes, qsizetype count) override;
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
    Passage Judge(int result);

    QString m_peer;
    bool m_ended = false;
    std::unique_ptr<ssl_ctx_st, Free> m_context;
    std::unique_ptr<ssl_st, Free> m_tls;
    Result m_agreement;
};
