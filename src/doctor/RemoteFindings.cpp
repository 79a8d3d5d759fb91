// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RemoteFindings.h"

namespace
{

using Weight = Finding::Weight;
using Stage = RemoteFacts::Stage;

bool IsServer(const RemoteAddress &address)
{
    return address.kind == RemoteAddress::Kind::SerialServer;
}

/// A finding of a stage: what was found if it was passed, else why it was not.
Finding OfStage(const char *title, Stage stage, const RemoteFacts &facts, const QString &found)
{
    const bool passed = facts.reached > stage;
    return {QString::fromLatin1(title), passed ? found : facts.cause,
            passed ? Weight::Fact : Weight::Fault};
}

QString WhoVerified(const RemoteAddress &address)
{
    return QStringLiteral("the certificate is valid and made out to %1; who certified it is in %2")
        .arg(address.host, address.authority.isEmpty() ? QStringLiteral("the system's own store")
                                                       : address.authority);
}

Finding Server(const RemoteFacts &facts)
{
    return {QStringLiteral("Server"),
            facts.server.isEmpty() ? QStringLiteral("it does not say its name")
                                   : QStringLiteral("it calls itself \"%1\"").arg(facts.server)};
}

Finding Settings(const RemoteFacts &facts)
{
    return {QStringLiteral("Settings"),
            facts.asked.isEmpty()
                ? QStringLiteral("not asked for, so that nobody who uses the port notices")
                : QStringLiteral("%1, as asked; that a server confirms it does not prove that the "
                                 "device does it")
                      .arg(facts.asked)};
}

/// It shows in the times of what the device says, and nothing of it travels.
Finding CharacterDelay(const RemoteFacts &facts)
{
    const bool known = facts.server.contains(QLatin1String("ser2net"), Qt::CaseInsensitive);
    return {QStringLiteral("Character delay"), QStringLiteral("cannot be told from here"),
            Weight::Fact,
            known ? QStringLiteral("without \"chardelay: false\" in its configuration ser2net "
                                   "holds each answer back for some milliseconds")
                  : QString()};
}

} // namespace

QList<Finding> AddressFindings(const ParsedAddress &address)
{
    const QString title = QStringLiteral("Address");
    if (address.state.Failed())
        return {{title, address.state.Cause(), Weight::Fault}};
    return {{title, RemoteMeaningText(address.address)}};
}

QList<Finding> RemoteFindings(const RemoteAddress &address, const RemoteFacts &facts)
{
    QList<Finding> findings = {
        OfStage("Name", Stage::Name, facts,
                QStringLiteral("%1 is %2").arg(address.host, facts.addresses.join(u' ')))};
    const auto reached = [&facts](Stage stage) { return facts.reached >= stage; };
    if (reached(Stage::Connection))
        findings.append(
            OfStage("Connection", Stage::Connection, facts, QStringLiteral("somebody is there")));
    if (reached(Stage::Security) && address.secure)
        findings.append(OfStage("TLS", Stage::Security, facts, WhoVerified(address)));
    if (reached(Stage::Conversation) && IsServer(address))
        findings.append(OfStage("RFC 2217", Stage::Conversation, facts,
                                QStringLiteral("it speaks of serial lines")));
    if (!reached(Stage::Done))
        return findings;
    if (IsServer(address))
        findings.append({Server(facts), Settings(facts)});
    findings.append(CharacterDelay(facts));
    return findings;
}
