// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

/// A program that has to do with a device.
struct PortUser {
    QString program;    ///< empty if the system does not say
    qint64 process = 0; ///< 0 if it is not known
    bool own = false;   ///< this very process
};

/// What the system says of a device that is plugged in at a USB port.
struct UsbFacts {
    QString maker{};
    QString product{};
    QString serialNumber{};
    QString identity{};           ///< of maker and product, as "0403:6001"
    QString place{};              ///< bus and ports on the way, as "1-1.2"
    std::optional<int> latency{}; ///< milliseconds of the driver's timer; nothing if it has none
    QString latencyFile{};        ///< by which it is set
    bool latencyMaySet = false;   ///< by this user
    bool modemManagerIgnores = false; ///< the system's rules keep it away
};

/// Whose a device is, and what this user may do with it.
struct DeviceRights {
    enum class Membership { None, NextLogin, Now };

    QString owner{}; ///< the names of owner and group, or their numbers
    QString group{};
    QString mode{}; ///< as "crw-rw----"
    bool mayRead = false;
    bool mayWrite = false;
    QString user{}; ///< who asks
    bool administrator = false;
    bool groupMay = false; ///< its members may read and write; never that of the administrator
    Membership membership = Membership::None; ///< of the user in that group
};

/// A file by which programs tell one another that they use a device.
struct LockFile {
    QString file{};
    PortUser user{};       ///< who is said to use it; process 0 if that cannot be read
    bool alive = false;    ///< that process runs
    bool inTheWay = false; ///< the device is not opened while it is there
};

/// All that can be known of a device without opening it.
struct DeviceFacts {
    enum class Kind { Missing, Folder, File, OtherDevice, Port, PseudoTerminal };

    Kind kind = Kind::Missing;
    QString device{};  ///< its one name; empty if there is none
    QString leadsTo{}; ///< of a link: what it names, be it there or not
    QString description{};
    QString driver{};
    bool hardware = true; ///< false if the driver has found none
    QStringList stableNames{};
    std::optional<UsbFacts> usb{};
    DeviceRights rights{};

    QList<PortUser> users{};    ///< that have it open
    QList<PortUser> otherEnd{}; ///< that have the other end of a pseudo-terminal
    int hiddenProcesses = 0;    ///< into which this user may not look
    QList<LockFile> locks{};

    QString consoleWords{};                 ///< of the kernel's command line, as "console=ttyS0"
    bool console = false;                   ///< the kernel writes its messages there
    std::optional<PortUser> login{};        ///< a program that asks for a login there
    std::optional<PortUser> modemManager{}; ///< if one runs, whatever its devices are
};

/// What came of opening a device, setting it, reading it back and closing it.
struct DeviceTrial {
    struct Speed {
        qint32 asked; ///< baud
        qint32 done;  ///< what the driver says it does
    };

    QString asked{};       ///< settings, as "9600,N,8,1"
    bool tried = true;     ///< false if that would have disturbed somebody
    QString cause{};       ///< why it failed, or was not tried; empty if all was as asked
    QList<Speed> speeds{}; ///< empty if they could not be tried
};

/// What came of reaching for a port on another machine.
struct RemoteFacts {
    /// Each is behind the one before.
    enum class Stage { Address, Name, Connection, Security, Conversation, Done };

    Stage reached = Stage::Address; ///< where it ended
    QString cause{};                ///< why it ended there; empty when it was done
    QStringList addresses{};        ///< numbers that the name stands for
    QString server{};               ///< what it calls itself; empty if it does not say
    QString asked{};                ///< settings that it confirmed; empty if it was asked for none
};
