// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RemoteAddress.h"

#include <QList>
#include <QUrl>

#include <algorithm>
#include <array>
#include <optional>

namespace
{

struct SchemeRow {
    const char *name;
    RemoteAddress::Kind kind;
    bool secure;
};

constexpr std::array Schemes = {SchemeRow{"rfc2217", RemoteAddress::Kind::SerialServer, false},
                                SchemeRow{"rfc2217s", RemoteAddress::Kind::SerialServer, true},
                                SchemeRow{"tcp", RemoteAddress::Kind::Bytes, false},
                                SchemeRow{"tls", RemoteAddress::Kind::Bytes, true}};

struct FileRow {
    const char *name;
    QString RemoteAddress::*file;
};

constexpr std::array Files = {FileRow{"authority", &RemoteAddress::authority},
                              FileRow{"certificate", &RemoteAddress::certificate},
                              FileRow{"key", &RemoteAddress::key}};

constexpr QStringView Separator = u"://";

const SchemeRow &SchemeOf(const RemoteAddress &address)
{
    return *std::find_if(Schemes.begin(), Schemes.end(), [&](const SchemeRow &row) {
        return row.kind == address.kind && row.secure == address.secure;
    });
}

/// What is wrong, in words that go on a sentence; empty if nothing is.
using Complaint = QString;

Complaint TakeScheme(RemoteAddress &address, QStringView scheme)
{
    const auto row = std::find_if(Schemes.begin(), Schemes.end(), [&](const SchemeRow &each) {
        return scheme.compare(QLatin1StringView(each.name), Qt::CaseInsensitive) == 0;
    });
    if (row == Schemes.end())
        return QStringLiteral("it begins with none of rfc2217://, rfc2217s://, tcp:// and tls://");
    address.kind = row->kind;
    address.secure = row->secure;
    return {};
}

Complaint TakePort(RemoteAddress &address, QStringView port)
{
    const bool digits =
        std::all_of(port.begin(), port.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
    address.port = digits ? port.toUShort() : 0;
    if (address.port > 0)
        return {};
    return port.isEmpty() ? QStringLiteral("a port number must stand behind the host, as in :4001")
                          : QStringLiteral("\"%1\" is no port number from 1 to 65535").arg(port);
}

/// Letters, digits and what else names and numbers of machines are made of.
bool IsHostName(QStringView host, bool brackets)
{
    const QStringView others = brackets ? QStringView(u":.%-_") : QStringView(u".-_");
    return !host.isEmpty() && host.front() != u'-' &&
           std::all_of(host.begin(), host.end(),
                       [&](QChar c) { return c.isLetterOrNumber() || others.contains(c); });
}

Complaint TakePlace(RemoteAddress &address, QStringView place)
{
    if (place.contains(u'@'))
        return QStringLiteral("a user or a password must not stand in it; such servers know none");
    const bool brackets = place.startsWith(u'[');
    const qsizetype hostEnd = brackets ? place.indexOf(u']') : place.indexOf(u':');
    if (brackets && hostEnd < 0)
        return QStringLiteral("the bracket \"[\" has no end");
    const QStringView host = hostEnd < 0 ? place : place.sliced(0, hostEnd);
    address.host = host.sliced(brackets ? 1 : 0).toString().toLower();
    const QStringView behind =
        hostEnd < 0 ? QStringView() : place.sliced(hostEnd + (brackets ? 1 : 0));
    if (!brackets && behind.lastIndexOf(u':') > 0)
        return QStringLiteral("a number of IPv6 stands in brackets, as in [::1]:4001");
    if (!IsHostName(address.host, brackets))
        return QStringLiteral("\"%1\" is no name of a machine").arg(address.host);
    if (!behind.isEmpty() && !behind.startsWith(u':'))
        return QStringLiteral("\"%1\" stands behind the host").arg(behind);
    return TakePort(address, behind.mid(1));
}

Complaint TakeWish(RemoteAddress &address, QStringView wish)
{
    if (wish == u"listen") {
        address.listens = true;
        return {};
    }
    const qsizetype equals = wish.indexOf(u'=');
    const QStringView name = equals < 0 ? wish : wish.first(equals);
    const auto row = std::find_if(Files.begin(), Files.end(), [&](const FileRow &each) {
        return name == QLatin1StringView(each.name);
    });
    if (row == Files.end())
        return QStringLiteral("\"%1\" is not known; there are listen, authority=FILE, "
                              "certificate=FILE and key=FILE")
            .arg(name);
    address.*row->file =
        equals < 0 ? QString() : QUrl::fromPercentEncoding(wish.sliced(equals + 1).toUtf8());
    if ((address.*row->file).isEmpty())
        return QStringLiteral("\"%1\" names no file, as in %1=FILE").arg(name);
    return {};
}

Complaint JudgeFiles(const RemoteAddress &address)
{
    const bool files = std::any_of(Files.begin(), Files.end(), [&](const FileRow &row) {
        return !(address.*row.file).isEmpty();
    });
    if (files && !address.secure)
        return QStringLiteral("certificates are of use over TLS alone: rfc2217s:// or tls://");
    if (address.certificate.isEmpty() != address.key.isEmpty())
        return QStringLiteral("certificate=FILE and key=FILE go together");
    return {};
}

Complaint TakeAll(RemoteAddress &address, QStringView text)
{
    const qsizetype schemeEnd = text.indexOf(Separator);
    if (Complaint wrong = TakeScheme(address, text.first(std::max<qsizetype>(schemeEnd, 0)));
        !wrong.isEmpty())
        return wrong;
    const QStringView rest = text.sliced(schemeEnd + Separator.size());
    const qsizetype question = rest.indexOf(u'?');
    QStringView place = question < 0 ? rest : rest.first(question);
    if (place.endsWith(u'/'))
        place.chop(1);
    if (Complaint wrong = TakePlace(address, place); !wrong.isEmpty())
        return wrong;
    if (question >= 0)
        for (const QStringView wish : rest.sliced(question + 1).split(u'&'))
            if (Complaint wrong = TakeWish(address, wish); !wrong.isEmpty())
                return wrong;
    return JudgeFiles(address);
}

} // namespace

bool IsRemoteAddress(QStringView device)
{
    const QStringView name = device.trimmed();
    const qsizetype end = name.indexOf(Separator);
    return end > 0 && std::all_of(name.begin(), name.begin() + end,
                                  [](QChar c) { return c.isLetterOrNumber() || c == u'+'; });
}

ParsedAddress ParseRemoteAddress(const QString &text)
{
    ParsedAddress parsed;
    if (const Complaint wrong = TakeAll(parsed.address, QStringView(text).trimmed());
        !wrong.isEmpty())
        parsed.state =
            Failure{QStringLiteral("The address %1 is wrong: %2").arg(text.trimmed(), wrong)};
    return parsed;
}

QString RemoteMeaningText(const RemoteAddress &address)
{
    if (address.listens)
        return QStringLiteral("Listening only: no settings, no signals and no data are sent. The "
                              "settings are set by the other side.");
    if (address.kind == RemoteAddress::Kind::Bytes)
        return QStringLiteral("Bytes alone: the settings of the line are set by the other side.");
    return QStringLiteral("Settings, signals and breaks travel with the bytes.");
}

QString PeerText(const RemoteAddress &address)
{
    const bool brackets = address.host.contains(u':');
    return QStringLiteral("%1:%2")
        .arg(brackets ? u'[' + address.host + u']' : address.host)
        .arg(address.port);
}

QString RemoteAddressText(const RemoteAddress &address)
{
    QStringList wishes;
    if (address.listens)
        wishes << QStringLiteral("listen");
    for (const FileRow &row : Files)
        if (const QString &file = address.*row.file; !file.isEmpty())
            wishes << QLatin1String(row.name) + u'=' +
                          QString::fromLatin1(QUrl::toPercentEncoding(file, "/"));
    QString text = QLatin1String(SchemeOf(address).name) + Separator.toString() + PeerText(address);
    if (!wishes.isEmpty())
        text += u'?' + wishes.join(u'&');
    return text;
}
