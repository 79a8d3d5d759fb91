// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RemoteOpening.h"
#include "SystemPortFinder.h"

/// Listening alone, so that whoever uses the port does not notice.
QString SystemPortFinder::TryRemote(const QString &address) const
{
    ParsedAddress parsed = ParseRemoteAddress(address);
    if (parsed.state.Failed())
        return parsed.state.Cause();
    RemoteRequest request;
    request.address = parsed.address;
    request.address.listens = true;
    request.asksName = true;
    RemoteOpening opening(request);
    opening.Open([] { return true; });
    if (opening.State().Failed())
        return opening.State().Cause();
    const RemoteLink link = opening.TakeLink();
    const QString peer = PeerText(parsed.address);
    if (!link.client)
        return QStringLiteral("%1 is connected. It passes bytes alone.").arg(peer);
    const QString name = link.client->ServerName();
    return QStringLiteral("%1 is connected and speaks RFC 2217. The server %2")
        .arg(peer, name.isEmpty() ? QStringLiteral("does not say its name.")
                                  : QStringLiteral("calls itself \"%1\".").arg(name));
}
