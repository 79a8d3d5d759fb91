// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RecordFolder.h"
#include "support/ScriptedDisk.h"

#include <QMap>
#include <QSet>

#include <algorithm>
#include <mutex>

/// Segments in memory, on a disk with as much room as the test says. A test takes the part of other
/// programs: what it puts here was left behind, what it puts among the held as well has a program
/// that lives.
class MemoryRecordFolder final : public RecordFolder
{
  public:
    struct Content {
        QByteArray bytes;
        qint64 written = 0;
    };
    using Key = std::pair<QString, qint64>;

    mutable std::mutex lock; ///< guards what follows while a program runs
    QMap<Key, Content> files;
    QSet<Key> held;
    qint64 room = ScriptedDisk::Plenty; ///< bytes that can still be written
    qint64 most = 0;                    ///< bytes that have been here at once

    void Put(const QString &session, qint64 number, const QByteArray &bytes)
    {
        files[{session, number}] = {bytes, ++m_time};
    }
    qint64 Size()
    {
        qint64 size = 0;
        for (const Content &each : std::as_const(files))
            size += each.bytes.size();
        return size;
    }

    Made Make(const Name &name, QByteArrayView first) override
    {
        const std::lock_guard guard(lock);
        files[KeyOf(name)] = {};
        if (const Result written = Write(KeyOf(name), first); written.Failed()) {
            files.remove(KeyOf(name));
            return {nullptr, written};
        }
        held << KeyOf(name);
        return {std::make_unique<Held>(*this, KeyOf(name)), {}};
    }
    QList<Segment> Segments() const override
    {
        const std::lock_guard guard(lock);
        QList<Segment> segments;
        for (auto each = files.begin(); each != files.end(); ++each)
            segments.append({{each.key().first, each.key().second},
                             each->bytes.size(),
                             each->written,
                             held.contains(each.key())});
        std::stable_sort(segments.begin(), segments.end(),
                         [](const Segment &a, const Segment &b) { return a.written < b.written; });
        return segments;
    }
    std::unique_ptr<File> Take(const Name &name) override
    {
        const std::lock_guard guard(lock);
        if (!files.contains(KeyOf(name)) || held.contains(KeyOf(name)))
            return nullptr;
        held << KeyOf(name);
        return std::make_unique<Held>(*this, KeyOf(name));
    }
    FileSystem::Opened Open(const Name &name) const override
    {
        const std::lock_guard guard(lock);
        if (!files.contains(KeyOf(name)))
            return {nullptr, Failure{QStringLiteral("gone"), FileMissing}};
        return {std::make_unique<OpenFile>(*this, KeyOf(name), files[KeyOf(name)].bytes), {}};
    }
    std::unique_ptr<Turn> TakeTurn() override { return nullptr; }
    QString Path() const override { return QStringLiteral("/cache/record"); }

  private:
    /// It grows, and stays as it was when it has been deleted.
    class OpenFile final : public InputDevice
    {
      public:
        OpenFile(const MemoryRecordFolder &folder, Key key, QByteArray bytes)
            : m_folder(folder), m_key(std::move(key)), m_bytes(std::move(bytes))
        {
        }
        Given ReadAt(qint64 place, char *bytes, qint64 count) const override
        {
            return ScriptedDisk::Reader(Now()).ReadAt(place, bytes, count);
        }
        qint64 Size() const override { return Now().size(); }

      private:
        QByteArray Now() const
        {
            const std::lock_guard guard(m_folder.lock);
            m_bytes = m_folder.files.value(m_key, {m_bytes, 0}).bytes;
            return m_bytes;
        }

        const MemoryRecordFolder &m_folder;
        const Key m_key;
        mutable QByteArray m_bytes;
    };

    class Held final : public File
    {
      public:
        Held(MemoryRecordFolder &folder, Key key) : m_folder(folder), m_key(std::move(key)) {}
        ~Held() override
        {
            const std::lock_guard guard(m_folder.lock);
            m_folder.held.remove(m_key);
        }
        Q_DISABLE_COPY_MOVE(Held)
        Result Append(QByteArrayView bytes) override
        {
            const std::lock_guard guard(m_folder.lock);
            if (!m_folder.files.contains(m_key))
                return Failure{QStringLiteral("deleted"), FileMissing};
            return m_folder.Write(m_key, bytes);
        }
        void Remove() override
        {
            const std::lock_guard guard(m_folder.lock);
            m_folder.files.remove(m_key);
        }

      private:
        MemoryRecordFolder &m_folder;
        Key m_key;
    };

    static Key KeyOf(const Name &name) { return {name.session, name.number}; }

    Result Write(const Key &key, QByteArrayView bytes)
    {
        if (room < bytes.size())
            return Failure{QStringLiteral("No space left on device")};
        room -= bytes.size();
        files[key].bytes.append(bytes);
        files[key].written = ++m_time;
        most = std::max(most, Size());
        return {};
    }

    qint64 m_time = 0;
};
