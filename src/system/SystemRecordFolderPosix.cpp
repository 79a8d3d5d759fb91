// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemRecordFolder.h"

#include "FileName.h"
#include "PrivateFolderPosix.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <optional>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

const QString Prefix = QStringLiteral("session-");
const QString Suffix = QStringLiteral(".pcapng");
constexpr int Digits = 6; ///< of numbers, at least, so that listings are in their order

constexpr std::chrono::milliseconds MostPatience{1000};
constexpr std::chrono::milliseconds RetryPause{5};

QString NameOf(const RecordFolder::Name &name)
{
    return Prefix + name.session + u'-' +
           QString::number(name.number).rightJustified(Digits, u'0') + Suffix;
}

std::optional<RecordFolder::Name> NameFrom(const QString &file)
{
    static const QRegularExpression form(
        QStringLiteral("^session-([0-9A-Za-z.]+)-([0-9]{6,18})\\.pcapng$"));
    const QRegularExpressionMatch match = form.match(file);
    if (!match.hasMatch())
        return {};
    return RecordFolder::Name{match.captured(1), match.captured(2).toLongLong()};
}

class HeldSegment final : public RecordFolder::File
{
  public:
    HeldSegment(QString folder, QByteArray name, Descriptor file)
        : m_folder(std::move(folder)), m_name(std::move(name)), m_file(std::move(file))
    {
    }

    /// What was not taken whole is cut off again.
    Result Append(QByteArrayView bytes) override
    {
        struct stat status = {};
        if (::fstat(m_file.Number(), &status) != 0)
            return SystemFailure();
        if (status.st_nlink == 0)
            return Failure{QStringLiteral("The file has been deleted"), FileMissing};
        if (::lseek(m_file.Number(), status.st_size, SEEK_SET) >= 0 && WriteAll(m_file, bytes))
            return {};
        Failure failure = SystemFailure();
        if (::ftruncate(m_file.Number(), status.st_size) != 0)
            return Failure{failure.cause + QStringLiteral("; its end is torn")};
        return failure;
    }

    void Remove() override { PrivateFolder(m_folder).Remove(m_name, m_file); }

  private:
    QString m_folder;
    QByteArray m_name;
    Descriptor m_file;
};

/// A lock on the folder itself.
class HeldTurn final : public RecordFolder::Turn
{
  public:
    explicit HeldTurn(PrivateFolder folder) : m_folder(std::move(folder)) {}

  private:
    PrivateFolder m_folder;
};

} // namespace

QString SystemRecordFolder::UsualPath()
{
    return PrivateFolder::UsualPath("XDG_CACHE_HOME", QStringLiteral(".cache")) +
           QStringLiteral("/record");
}

RecordFolder::Made SystemRecordFolder::Make(const Name &name, QByteArrayView first)
{
    const PrivateFolder folder = PrivateFolder::Make(m_path);
    if (!folder.IsOpen())
        return {nullptr, SystemFailure()};
    folder.RemoveUnfinished(Prefix);
    const QByteArray file = FileName::Encode(NameOf(name));
    Result created;
    Descriptor descriptor = folder.Create(file, first, PrivateFolder::Safety::OfProgram, created);
    if (created.Failed())
        return {nullptr, created};
    return {std::make_unique<HeldSegment>(m_path, file, std::move(descriptor)), {}};
}

/// Whether a segment is held is found out by trying to hold it.
QList<RecordFolder::Segment> SystemRecordFolder::Segments() const
{
    const PrivateFolder folder(m_path);
    if (!folder.IsOpen())
        return {};
    QList<Segment> segments;
    const QStringList files = QDir(m_path).entryList({Prefix + u'*' + Suffix}, QDir::Files);
    for (const QString &file : files) {
        const std::optional<Name> name = NameFrom(file);
        const Descriptor open = folder.Open(FileName::Encode(file), O_RDONLY);
        struct stat status = {};
        if (!name || !open.IsOpen() || ::fstat(open.Number(), &status) != 0 ||
            !S_ISREG(status.st_mode))
            continue;
        const qint64 written =
            qint64(status.st_mtim.tv_sec) * 1'000'000'000 + status.st_mtim.tv_nsec;
        segments.append({*name, status.st_size, written, !Lock(open)});
    }
    std::stable_sort(segments.begin(), segments.end(),
                     [](const Segment &a, const Segment &b) { return a.written < b.written; });
    return segments;
}

std::unique_ptr<RecordFolder::File> SystemRecordFolder::Take(const Name &name)
{
    const PrivateFolder folder(m_path);
    if (!folder.IsOpen())
        return nullptr;
    const QByteArray file = FileName::Encode(NameOf(name));
    Descriptor descriptor = folder.Take(file, O_RDWR);
    if (!descriptor.IsOpen())
        return nullptr;
    return std::make_unique<HeldSegment>(m_path, file, std::move(descriptor));
}

FileSystem::Opened SystemRecordFolder::Open(const Name &name) const
{
    Descriptor file = PrivateFolder(m_path).Open(FileName::Encode(NameOf(name)), O_RDONLY);
    struct stat status = {};
    if (!file.IsOpen() || ::fstat(file.Number(), &status) != 0)
        return {nullptr, SystemFailure()};
    if (!S_ISREG(status.st_mode))
        return {nullptr, Failure{QStringLiteral("It is no file")}};
    return {InputFrom(std::move(file)), {}};
}

std::unique_ptr<RecordFolder::Turn> SystemRecordFolder::TakeTurn()
{
    PrivateFolder folder(m_path);
    const QDeadlineTimer deadline(MostPatience);
    while (folder.IsOpen() && !Lock(folder.Folder())) {
        if (errno != EWOULDBLOCK || deadline.hasExpired())
            return nullptr;
        std::this_thread::sleep_for(RetryPause);
    }
    return std::make_unique<HeldTurn>(std::move(folder));
}
