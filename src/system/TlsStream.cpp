// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TlsStream.h"

#include "RemoteAddress.h"
#include "TlsLoading.h"

TlsStream::TlsStream(Descriptor socket, const RemoteAddress &address)
    : RemoteStream(std::move(socket), PeerText(address)),
      m_request{PeerText(address), address.host, address.authority, address.certificate,
                address.key}
{
}

Result TlsStream::Begin()
{
    LoadedTls loaded = LoadTls();
    if (loaded.state.Failed())
        return loaded.state;
    m_session = std::move(loaded.session);
    return m_session->Begin(Handle(), m_request);
}

qsizetype TlsStream::Note(const TlsSession::Passage &passage)
{
    if (passage.end == TlsSession::End::None)
        return passage.count;
    if (passage.end == TlsSession::End::Closed)
        NoteClosed();
    else
        NoteEnd(passage.cause);
    return -1;
}

qsizetype TlsStream::Receive(char *bytes, size_t most)
{
    return Note(m_session->Receive(bytes, most));
}

qsizetype TlsStream::Transmit(const char *bytes, qsizetype count)
{
    return Note(m_session->Transmit(bytes, count));
}
