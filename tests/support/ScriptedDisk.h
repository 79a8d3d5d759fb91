// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "FileSystem.h"

#include <QMap>

/// A disk in memory with as much room as the test says. When it is full, a write takes what fits
/// and the next one fails, as on a real disk.
class ScriptedDisk final : public FileSystem
{
  public:
    static constexpr qint64 Plenty = qint64(1) << 40;

    QMap<QString, QByteArray> files; ///< by path
    qint64 room = Plenty;            ///< bytes that can still be written
    QString refused;                 ///< path that cannot be made
    bool failRead = false;
    bool held = false; ///< another program updates the file
    bool failSync = false;
    bool failTakePlace = false;
    qint64 vanishing = 0; ///< bytes that are said to be written, but are missing in the file
    int unfinished = 0;   ///< files beside others that exist now

    /// An empty disk without faults.
    void Reset()
    {
        files.clear();
        room = Plenty;
        failRead = held = failSync = failTakePlace = false;
        vanishing = 0;
    }

    Created Create(const QString &path) override
    {
        if (path == refused)
            return {nullptr, Failure{QStringLiteral("Read-only file system")}};
        files[path].clear();
        return {std::make_unique<Device>(*this, path, false), {}};
    }
    Created CreateBeside(const QString &path) override
    {
        ++unfinished;
        return {std::make_unique<Device>(*this, path, true), {}};
    }
    Created CreateForUpdate(const QString &path) override
    {
        if (held)
            return {nullptr,
                    Failure{QStringLiteral("Another program is saving it"), FileAlreadyOpen}};
        return CreateBeside(path);
    }
    void Tidy(const QString &) override {}
    Result Rename(const QString &from, const QString &to) override
    {
        if (from == refused)
            return Failure{QStringLiteral("Read-only file system")};
        files[to] = files.take(from);
        return {};
    }
    Opened Open(const QString &path) const override
    {
        if (!files.contains(path) || failRead)
            return {nullptr, Failure{QStringLiteral("cannot be read"), FileMissing}};
        return {std::make_unique<Reader>(files[path]), {}};
    }
    Content Read(const QString &path, qint64 limit) override
    {
        if (!files.contains(path))
            return {{}, Failure{QStringLiteral("cannot be read"), FileMissing}};
        if (failRead || files[path].size() > limit)
            return {{}, Failure{QStringLiteral("cannot be read")}};
        return {files[path], {}};
    }
    bool Exists(const QString &path) const override { return files.contains(path); }
    void Remove(const QString &path) override { files.remove(path); }
    QString CanonicalPath(const QString &path) const override { return path; }
    QString AbsolutePath(const QString &path) const override
    {
        return path.startsWith(u'/') ? path : QStringLiteral("/here/") + path;
    }

    /// Of bytes in memory.
    class Reader final : public InputDevice
    {
      public:
        explicit Reader(QByteArray bytes) : m_bytes(std::move(bytes)) {}

        Given ReadAt(qint64 place, char *bytes, qint64 most) const override
        {
            const QByteArray part = m_bytes.mid(place, most);
            std::copy(part.begin(), part.end(), bytes);
            return {part.size(), {}};
        }
        qint64 Size() const override { return m_bytes.size(); }

      private:
        QByteArray m_bytes;
    };

  private:
    class Device final : public OutputDevice
    {
      public:
        Device(ScriptedDisk &disk, QString path, bool beside)
            : m_disk(disk), m_path(std::move(path)), m_beside(beside)
        {
        }
        ~Device() override { m_disk.unfinished -= m_beside ? 1 : 0; }
        Q_DISABLE_COPY_MOVE(Device)

        Taken Write(QByteArrayView bytes) override
        {
            if (m_disk.room == 0)
                return {0, NoSpace()};
            const qint64 count = std::min<qint64>(bytes.size(), m_disk.room);
            m_disk.room -= count;
            (m_beside ? m_bytes : m_disk.files[m_path]).append(bytes.first(count));
            return {count, {}};
        }
        Result CutTo(qint64 size) override
        {
            QByteArray &bytes = m_beside ? m_bytes : m_disk.files[m_path];
            m_disk.room += bytes.size() - size;
            bytes.truncate(size);
            return {};
        }
        Result Sync() override { return m_disk.failSync ? NoSpace() : Result(); }
        Result Check() const override
        {
            if (m_beside || m_disk.files.contains(m_path))
                return {};
            return Failure{QStringLiteral("It was deleted")};
        }
        qint64 Size() const override { return m_bytes.size() - m_disk.vanishing; }
        Result TakePlace() override
        {
            if (m_disk.failTakePlace)
                return NoSpace();
            m_disk.files[m_path] = m_bytes;
            return {};
        }

      private:
        static Failure NoSpace() { return {QStringLiteral("No space left on device")}; }

        ScriptedDisk &m_disk;
        QString m_path;
        bool m_beside;
        QByteArray m_bytes;
    };
};
