// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "LineSettings.h"
#include "Result.h"

#include <QByteArray>
#include <QSerialPort>
#include <QString>

#include <optional>
#include <utility>

/// What the operating system knows of serial devices and Qt's port object does not tell. The
/// handles are those of an open port object. Every system brings its own files for this header.
namespace SerialDevice
{

using Handle = decltype(std::declval<const QSerialPort &>().handle());

/// The one name of a device, whatever link leads to it; empty if there is no such device.
QString CanonicalName(const QString &device);

/// Holds a device open beside the port object, from before its opening on: asks the system why
/// the device cannot be used, and keeps what its line was like.
class Probe
{
  public:
    /// The alias is the name that the user gave; locks may stand under it too.
    Probe(const QString &canonicalName, const QString &alias);
    ~Probe();
    Q_DISABLE_COPY_MOVE(Probe)

    /// Whether the device can be used; the cause of a failure names the cure where it is known.
    const Result &State() const { return m_state; }
    /// Puts the line back to what it was at the beginning.
    void RestoreLine() const;

  private:
    Result Open(const QString &canonicalName, const QString &alias);

    Handle m_handle;
    QByteArray m_line;
    Result m_state;
};

/// Who has locked the device or keeps it for himself, such as "picocom (process 4711)"; empty if
/// nobody can be named.
QString LockOwner(const QString &canonicalName, const QString &alias);
QString HolderOf(const QString &canonicalName);
/// A lock file that stands in the way of the device; empty if there is none.
QString LockFileOf(const QString &canonicalName, const QString &alias);
/// Why this user may not open the device, and what to do.
QString MissingRights(const QString &canonicalName);

/// Asks the line for parity, data bits and stop bits; only ReadLineSettings tells whether it took
/// them. Damaged bytes come through as they are, and a break adds none.
void ApplyCharacterFormat(Handle handle, const LineSettings &settings);
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

/// Takes what the system has received, at most so many bytes, without waiting.
QByteArray ReadWaiting(Handle handle, qsizetype mostBytes);
/// Bytes that the system still has to send.
int UnsentBytes(Handle handle);
void DiscardUnsent(Handle handle);

} // namespace SerialDevice
