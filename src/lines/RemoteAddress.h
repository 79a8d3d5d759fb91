// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QString>

/// A serial line on another machine, as it may stand in the place of a device.
struct RemoteAddress {
    enum class Kind {
        SerialServer, ///< settings and signals travel with the bytes (RFC 2217)
        Bytes         ///< nothing but bytes
    };

    Kind kind = Kind::SerialServer;
    bool secure = false; ///< over TLS
    QString host{};      ///< a name or a number; one of IPv6 without its brackets
    quint16 port = 0;
    bool listens = false;  ///< sends no settings, no signals and no data
    QString authority{};   ///< file that holds who may certify the server; empty: the system's own
    QString certificate{}; ///< files of this side's own certificate and its key; empty: none
    QString key{};

    bool operator==(const RemoteAddress &) const = default;
};

/// Whether a device's name is an address, right or wrong: something like "word://".
bool IsRemoteAddress(QStringView device);

struct ParsedAddress {
    RemoteAddress address;
    Result state{}; ///< the cause of a failure names the address and what is wrong with it
};

/// Reads rfc2217://HOST:PORT, rfc2217s://, tcp:// or tls://, with ?listen, authority=FILE,
/// certificate=FILE and key=FILE behind it, joined by "&". In a file's name %XX stands for a
/// character.
ParsedAddress ParseRemoteAddress(const QString &text);

/// The same again, in one form for each address.
QString RemoteAddressText(const RemoteAddress &address);
/// What is to be known of a line at that address, as sentences.
QString RemoteMeaningText(const RemoteAddress &address);
/// "HOST:PORT", as messages call the other side.
QString PeerText(const RemoteAddress &address);
