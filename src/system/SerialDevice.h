// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineDamage.h"
#include "LineSettings.h"
#include "PortFacts.h"
#include "Result.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

class QLockFile;

/// What the operating system knows of serial devices, and does with them. Every system brings its
/// own files for this header.
namespace SerialDevice
{

using Handle = int;
constexpr Handle NoHandle = -1;

/// A device as a path, which users need not write in full.
QString PathOf(const QString &device);
/// The one name of a device, whatever link leads to it; empty if there is no such device.
QString CanonicalName(const QString &device);
/// What can be seen of a device without opening it: it differs whenever the device is another one,
/// or its rights are others. Empty if there is none.
QByteArray SightOf(const QString &device);
/// The same of the links that a name leads through; empty if it is no link.
QByteArray SightOfLinks(const QString &name);
/// Whether it is the device end of a pseudo-terminal.
bool IsPseudoTerminal(quint64 deviceNumber);
/// Whether the name of the device is lent: once it has gone, another program gets it.
bool HasLentName(const QString &canonicalName);

enum class Access { ReadAndWrite, ReadOnly };

/// Opens a device and asks the system why it cannot be used.
class Probe
{
  public:
    /// The alias is the name that the user gave; locks may stand under it too.
    Probe(const QString &canonicalName, const QString &alias, Access access);
    ~Probe();
    Q_DISABLE_COPY_MOVE(Probe)

    /// Whether the device can be used; the cause of a failure names the cure where it is known.
    const Result &State() const { return m_state; }
    SerialDevice::Handle Handle() const { return m_handle; }
    /// Gives the open device away: nobody else can open it from then on.
    SerialDevice::Handle Release();

  private:
    Result Open(const QString &canonicalName, const QString &alias, Access access);

    SerialDevice::Handle m_handle;
    Result m_state;
};

/// The lock file by which programs tell one another that a device is in use. It goes with this
/// object.
class Lock
{
  public:
    explicit Lock(const QString &canonicalName);
    ~Lock();
    Q_DISABLE_COPY_MOVE(Lock)

    /// Also where the system has no place for such files.
    bool Held() const { return m_held; }

  private:
    std::unique_ptr<QLockFile> m_file; ///< null where there is no place for it
    bool m_held;
};

/// Why the lock of a device that could be opened is not to be had.
Failure LockFailure(const QString &canonicalName, const QString &alias);

void Close(Handle handle);

/// Who has locked the device or keeps it for himself, such as "picocom (process 4711)"; empty if
/// nobody can be named.
QString LockOwner(const QString &canonicalName, const QString &alias);
QString HolderOf(const QString &canonicalName);
/// A lock file that stands in the way of the device; empty if there is none.
QString LockFileOf(const QString &canonicalName, const QString &alias);
/// All the lock files of the device, and what they say.
QList<LockFile> LockFilesOf(const QString &canonicalName, const QString &alias);
/// Why this user may not open the device, and what to do.
QString MissingRights(const QString &canonicalName);

/// Asks the line for the settings, with every byte as it is in both directions but for the marks of
/// what came damaged; only ReadLineSettings tells whether it took them.
void ApplySettings(Handle handle, const LineSettings &settings);
/// Whether the system marks, in what is read, damaged bytes and breaks (see LineMarks).
bool MarksDamage(Handle handle);
/// What the line does. A baud rate that differs by less than receivers notice counts as asked.
std::optional<LineSettings> ReadLineSettings(Handle handle, qint32 askedBaud);
/// The whole state of a line, for RestoreLineState; empty if there is no serial line.
QByteArray LineState(Handle handle);
void RestoreLineState(Handle handle, const QByteArray &state);

/// A device without modem lines takes it as done.
Result SetRequestToSend(Handle handle, bool on);
/// Has the driver pass on what arrives at once; not every driver can.
void SetLowLatency(Handle handle);

/// Fails once the device is no longer there.
Result CheckPresence(Handle handle, const QString &canonicalName);

/// Takes what the system has received, without waiting. The count; 0 if there is nothing, negative
/// if the device does not read.
qsizetype Read(Handle handle, char *bytes, size_t most);
/// Hands bytes to the system, without waiting. The count; 0 if it takes none now, negative if the
/// device does not write.
qsizetype Write(Handle handle, const char *bytes, qsizetype count);

DriverCounters ReadCounters(Handle handle);

/// Empty where the device has no such lines.
std::optional<ModemLines> ReadModemLines(Handle handle);

/// The lines by which this side tells of itself.
enum class OwnLine { RTS, DTR };
Result SwitchLine(Handle handle, OwnLine line, bool on);
/// Fails for a pseudo-terminal that has no wire.
Result SwitchBreak(Handle handle, bool on);

/// Bytes that the system still has to send, and those that it has received.
int UnsentBytes(Handle handle);
int UnreadBytes(Handle handle);
void DiscardUnsent(Handle handle);
void DiscardUnread(Handle handle);

} // namespace SerialDevice
