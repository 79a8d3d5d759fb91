// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ComPortOption.h"
#include "TelnetOptions.h"

#include <QString>

#include <bitset>
#include <utility>

/// What is asked of a serial port server.
struct ComPortRequest {
    LineSettings settings;
    bool requestToSend = true;
    bool listens = false; ///< sends no settings, no signals and no data
};

/// The client's half of a conversation with a serial port server, without a connection and without
/// a clock: it is fed with what comes, and says what came of it and what has to be sent. Whatever
/// the other side says, it keeps a bounded memory.
class ComPortClient
{
  public:
    enum class Outcome {
        Opening,       ///< the server has not answered all that it has to
        Ready,         ///< everything is as asked
        OtherSettings, ///< it was answered, but not as asked: see Settings
        NoComPort,     ///< the server does not know of serial lines
        NoBinary,      ///< the server changes bytes on their way
    };

    /// What came: first these bytes, then the news.
    struct Piece {
        enum class News { None, ModemLines, LineState, Settings };

        QByteArrayView bytes; ///< until the next call
        News news = News::None;
        quint8 lineState = 0; ///< bits of ComPortOption
    };

    explicit ComPortClient(const ComPortRequest &request);

    /// What a read brought; it must live until Next has found nothing more in it.
    void Feed(QByteArrayView read) { m_reader.Feed(read); }
    std::optional<Piece> Next();

    /// Commands to be sent, which are gone then.
    QByteArray TakeOutgoing() { return std::exchange(m_outgoing, {}); }

    Outcome Verdict() const { return m_verdict; }
    /// Whether the server has agreed to speak of serial lines at all.
    bool IsUnderstood() const;

    /// As asked, but for what the server has said.
    const LineSettings &Settings() const { return m_settings; }
    /// Whether the server has said anything of that setting.
    bool HasAnswered(ComPortOption::Setting setting) const
    {
        return m_answered.test(size_t(setting));
    }
    /// Nothing but what can be seen; empty as long as it has not said its name.
    const QString &ServerName() const { return m_serverName; }
    /// Whether data must wait until the server takes them again; commands need not.
    bool Suspended() const { return m_suspended; }

    /// Grows whenever the server has said something that may change what is asked below.
    quint64 CommandCount() const { return m_commands; }

    /// Nothing as long as it is not known that there are such lines.
    const std::optional<ModemLines> &Modem() const { return m_modem; }
    /// As the server has confirmed, else as asked.
    bool RTS() const { return m_rts; }
    bool DTR() const { return m_dtr; }
    void SetRTS(bool on);
    void SetDTR(bool on);
    /// Begins or ends a break.
    void SetBreak(bool on);

  private:
    std::optional<Piece> TakeCommand(QByteArrayView words);
    std::optional<Piece> TakeSetting(quint8 command, QByteArrayView value);
    std::optional<Piece> TakeModemState(quint8 state);
    std::optional<Piece> TakeControl(quint8 value);
    void TakeSignature(QByteArrayView name);
    void NegotiateFurther();
    void Judge();
    void Send(ComPortOption::Control control);

    ComPortRequest m_request;
    TelnetReader m_reader;
    TelnetOptions m_options;
    QByteArray m_outgoing;
    Outcome m_verdict = Outcome::Opening;
    bool m_asked = false; ///< for settings and signals
    LineSettings m_settings;
    std::bitset<ComPortOption::SettingCount> m_answered;
    QString m_serverName;
    bool m_otherTold = false; ///< settings that were not asked for, when all had been as asked
    quint64 m_commands = 0;
    bool m_suspended = false;
    bool m_hasLines = false; ///< of which a server can tell
    quint8 m_modemState = 0;
    std::optional<ModemLines> m_modem;
    bool m_rts = false;
    bool m_dtr = false;
};
