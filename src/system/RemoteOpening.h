// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ComPortClient.h"
#include "PortFacts.h"
#include "RemoteAddress.h"
#include "RemoteStream.h"

#include <QDeadlineTimer>

#include <chrono>
#include <functional>
#include <memory>

/// What a line on another machine is to be opened with.
struct RemoteRequest {
    int comNumber = 1; ///< as messages call it
    RemoteAddress address{};
    LineSettings settings{};
    bool requestToSend = true;
    bool reopens = false;  ///< a connection that was lost is made again
    bool asksName = false; ///< waits a while for the name of the server, too
    std::chrono::milliseconds mostTime = std::chrono::seconds(5); ///< of the opening
    int deadSeconds = 10; ///< after which a connection without a word counts as lost
};

/// An open connection, as a line takes it over.
struct RemoteLink {
    std::unique_ptr<RemoteStream> stream;
    std::unique_ptr<ComPortClient> client; ///< null where bytes travel alone
    QByteArray early{};                    ///< came before all was agreed
};

/// Looks a name up, connects, agrees upon keys and has the settings made, on whatever thread. What
/// nobody takes over is closed.
class RemoteOpening final
{
  public:
    /// Asked again and again from the thread of Open; after a no the opening ends soon.
    using Wanted = std::function<bool()>;

    explicit RemoteOpening(const RemoteRequest &request);

    /// Once. Takes as long as the request has it at most.
    void Open(const Wanted &wanted);
    /// Of the opening; OpeningCancelled if it was not wanted any more.
    const Result &State() const { return m_state; }
    /// Whether somebody was there.
    bool Reached() const { return m_stage > RemoteFacts::Stage::Connection; }
    /// How far it came.
    RemoteFacts::Stage Stage() const { return m_stage; }
    /// The numbers that the name of the machine stands for.
    const QStringList &Addresses() const { return m_addresses; }
    RemoteLink TakeLink() { return std::move(m_link); }

  private:
    struct Lookup;
    enum class Waited { Ready, Late, Unwanted };

    Result OpenAll();
    Result LookUp(Lookup &found);
    void NoteAddresses(const Lookup &found);
    Result Connect(const Lookup &found);
    Result ConnectTo(Descriptor &socket, QDeadlineTimer until) const;
    Result Secure();
    Result Converse();
    Result ConverseOnce();
    void AskName();
    Result SendOutgoing();
    bool Hear(QByteArrayView bytes);
    Result Refusal() const;
    Result Silence() const;
    Waited WaitFor(int handle, short events, QDeadlineTimer until) const;
    QString MostTimeText() const;
    Result Given(Waited waited, const QString &late) const;
    QString LastWords() const;

    RemoteRequest m_request;
    QString m_peer;
    QDeadlineTimer m_deadline;
    Wanted m_wanted;
    Descriptor m_socket;
    RemoteFacts::Stage m_stage = RemoteFacts::Stage::Address;
    QStringList m_addresses;
    RemoteLink m_link;
    Result m_state;
};
