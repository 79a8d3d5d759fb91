// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "OpenSslSession.h"

#include "FileName.h"

#include <cerrno>

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

namespace
{

/// What the library complained of first, which is nearest to the cause, or the system.
QString FirstComplaint()
{
    const int system = errno;
    const unsigned long error = ERR_peek_error();
    ERR_clear_error();
    if (error == 0)
        return qt_error_string(system);
    const char *reason = ERR_reason_error_string(error);
    return ERR_SYSTEM_ERROR(error) ? qt_error_string(ERR_GET_REASON(error))
                                   : QString::fromLatin1(reason ? reason : "unknown error");
}

/// A user data for whether somebody was asked for the passphrase of a key; nobody knows it.
int RefusePassphrase(char *, int, int, void *asked)
{
    *static_cast<bool *>(asked) = true;
    return -1;
}

QByteArray SystemName(const QString &file)
{
    return FileName::Encode(file);
}

} // namespace

void OpenSslSession::Free::operator()(ssl_st *tls) const
{
    SSL_free(tls);
}

void OpenSslSession::Free::operator()(ssl_ctx_st *context) const
{
    SSL_CTX_free(context);
}

Result OpenSslSession::Begin(int socket, const TlsRequest &request)
{
    m_peer = request.peer;
    ERR_clear_error();
    m_context.reset(SSL_CTX_new(TLS_client_method()));
    if (!m_context)
        return Failure{QStringLiteral("TLS is not to be had: ") + FirstComplaint()};
    SSL_CTX_set_min_proto_version(m_context.get(), TLS1_2_VERSION);
    SSL_CTX_set_verify(m_context.get(), SSL_VERIFY_PEER, nullptr);
    SSL_CTX_set_mode(m_context.get(),
                     SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER);
    if (Result taken = TakeAuthority(request.authority); taken.Failed())
        return taken;
    if (Result taken = TakeCertificate(request.certificate, request.key); taken.Failed())
        return taken;
    m_tls.reset(SSL_new(m_context.get()));
    if (!m_tls || SSL_set_fd(m_tls.get(), socket) != 1 || !ExpectHost(request.host))
        return Failure{QStringLiteral("TLS is not to be had: ") + FirstComplaint()};
    SSL_set_connect_state(m_tls.get());
    return {};
}

Result OpenSslSession::TakeAuthority(const QString &file)
{
    const bool taken = file.isEmpty()
                           ? SSL_CTX_set_default_verify_paths(m_context.get()) == 1
                           : SSL_CTX_load_verify_file(m_context.get(), SystemName(file)) == 1;
    if (taken)
        return {};
    return Failure{
        QStringLiteral("The authority's certificate in %1 cannot be used: %2")
            .arg(file.isEmpty() ? QStringLiteral("the system's store") : file, FirstComplaint())};
}

Result OpenSslSession::TakeCertificate(const QString &certificate, const QString &key)
{
    if (certificate.isEmpty())
        return {};
    if (SSL_CTX_use_certificate_chain_file(m_context.get(), SystemName(certificate)) != 1)
        return Failure{QStringLiteral("The certificate in %1 cannot be used: %2")
                           .arg(certificate, FirstComplaint())};
    bool asked = false;
    SSL_CTX_set_default_passwd_cb(m_context.get(), RefusePassphrase);
    SSL_CTX_set_default_passwd_cb_userdata(m_context.get(), &asked);
    const bool taken =
        SSL_CTX_use_PrivateKey_file(m_context.get(), SystemName(key), SSL_FILETYPE_PEM) == 1;
    SSL_CTX_set_default_passwd_cb_userdata(m_context.get(), nullptr);
    if (asked)
        return Failure{QStringLiteral("The key in %1 has a passphrase, which Serimonde cannot ask "
                                      "for; use a key without one that only you can read")
                           .arg(key)};
    if (!taken)
        return Failure{
            QStringLiteral("The key in %1 cannot be used: %2").arg(key, FirstComplaint())};
    return {};
}

/// The name in the certificate, or the number, must be that of the address.
bool OpenSslSession::ExpectHost(const QString &host)
{
    const QByteArray name = host.toUtf8();
    X509_VERIFY_PARAM *expected = SSL_get0_param(m_tls.get());
    if (X509_VERIFY_PARAM_set1_ip_asc(expected, name.constData()) == 1)
        return true;
    ERR_clear_error();
    X509_VERIFY_PARAM_set_hostflags(expected, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
    QByteArray asked = name;
    return X509_VERIFY_PARAM_set1_host(expected, name.constData(), size_t(name.size())) == 1 &&
           SSL_ctrl(m_tls.get(), SSL_CTRL_SET_TLSEXT_HOSTNAME, TLSEXT_NAMETYPE_host_name,
                    asked.data()) == 1;
}

TlsSession::Step OpenSslSession::Agree()
{
    ERR_clear_error();
    const int result = SSL_do_handshake(m_tls.get());
    if (result == 1)
        return Step::Done;
    switch (SSL_get_error(m_tls.get(), result)) {
    case SSL_ERROR_WANT_READ:
        return Step::WantsToRead;
    case SSL_ERROR_WANT_WRITE:
        return Step::WantsToWrite;
    default:
        m_agreement = Failure{Complaint()};
        return Step::Failed;
    }
}

QString OpenSslSession::Complaint() const
{
    const long verdict = SSL_get_verify_result(m_tls.get());
    if (verdict == X509_V_OK)
        return QStringLiteral("%1 does not agree upon TLS: %2").arg(m_peer, FirstComplaint());
    QString text = QStringLiteral("The certificate of %1 is not accepted: %2")
                       .arg(m_peer, QString::fromLatin1(X509_verify_cert_error_string(verdict)));
    ERR_clear_error();
    if (verdict == X509_V_ERR_UNABLE_TO_GET_ISSUER_CERT_LOCALLY ||
        verdict == X509_V_ERR_SELF_SIGNED_CERT_IN_CHAIN ||
        verdict == X509_V_ERR_DEPTH_ZERO_SELF_SIGNED_CERT)
        text += QStringLiteral("; an authority of your own is named by ?authority=FILE");
    return text;
}

TlsSession::Passage OpenSslSession::Judge(int result)
{
    if (result > 0)
        return {result};
    const int error = SSL_get_error(m_tls.get(), result);
    if (error == SSL_ERROR_WANT_READ || error == SSL_ERROR_WANT_WRITE)
        return {};
    m_ended = true;
    const bool closed = error == SSL_ERROR_ZERO_RETURN ||
                        ERR_GET_REASON(ERR_peek_last_error()) == SSL_R_UNEXPECTED_EOF_WHILE_READING;
    if (!closed)
        return {0, End::Lost, FirstComplaint()};
    ERR_clear_error();
    return {0, End::Closed};
}

TlsSession::Passage OpenSslSession::Receive(char *bytes, size_t most)
{
    ERR_clear_error();
    return Judge(SSL_read(m_tls.get(), bytes, int(most)));
}

TlsSession::Passage OpenSslSession::Transmit(const char *bytes, qsizetype count)
{
    ERR_clear_error();
    return count == 0 ? Passage() : Judge(SSL_write(m_tls.get(), bytes, int(count)));
}

void OpenSslSession::Finish()
{
    ERR_clear_error();
    if (!m_ended)
        SSL_shutdown(m_tls.get());
    ERR_clear_error();
}

extern "C" Q_DECL_EXPORT TlsSession *SerimondeTlsSession()
{
    return new OpenSslSession;
}
