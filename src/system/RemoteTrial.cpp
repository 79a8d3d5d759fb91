// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineSettings.h"
#include "RemoteOpening.h"
#include "SystemPortFinder.h"

RemoteFacts SystemPortFinder::Reach(const QString &address, const QString &settings) const
{
    RemoteFacts facts;
    const ParsedAddress parsed = ParseRemoteAddress(address);
    const auto line = ParseLineSettings(settings);
    facts.cause = parsed.state.Cause();
    if (parsed.state.Failed())
        return facts;
    RemoteRequest request;
    request.address = parsed.address;
    request.address.listens = parsed.address.listens || !line;
    request.settings = line.value_or(LineSettings());
    request.asksName = true;
    RemoteOpening opening(request);
    opening.Open([] { return true; });
    facts.reached = opening.Stage();
    facts.cause = opening.State().Cause();
    facts.addresses = opening.Addresses();
    const RemoteLink link = opening.TakeLink();
    if (!link.client)
        return facts;
    facts.server = link.client->ServerName();
    if (!request.address.listens)
        facts.asked = settings;
    return facts;
}

/// Listening alone, so that whoever uses the port does not notice.
QString SystemPortFinder::TryRemote(const QString &address) const
{
    const RemoteFacts facts = Reach(address, {});
    if (!facts.cause.isEmpty())
        return facts.cause;
    const RemoteAddress parsed = ParseRemoteAddress(address).address;
    const QString peer = PeerText(parsed);
    if (parsed.kind == RemoteAddress::Kind::Bytes)
        return QStringLiteral("%1 is connected. It passes bytes alone.").arg(peer);
    return QStringLiteral("%1 is connected and speaks RFC 2217. The server %2")
        .arg(peer, facts.server.isEmpty()
                       ? QStringLiteral("does not say its name.")
                       : QStringLiteral("calls itself \"%1\".").arg(facts.server));
}
