// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SystemRecoveryFolder.h"

#include "FileName.h"
#include "PrivateFolderPosix.h"

#include <QDir>
#include <QRandomGenerator>

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace
{

/// No project is longer, and no file of another making is read beyond it.
constexpr qint64 LongestContent = qint64(1) << 30;

const QString Prefix = QStringLiteral("unsaved-");
const QString Suffix = QStringLiteral(".json");

/// By its time, so that names are in the order of their files.
QByteArray NewName()
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    return FileName::Encode(Prefix + now.toString(QStringLiteral("yyyyMMddhhmmsszzz-")) +
                            QString::number(QRandomGenerator::global()->generate(), 36) + Suffix);
}

class HeldFile final : public RecoveryFolder::File
{
  public:
    HeldFile(QString folder, QByteArray name, Descriptor file)
        : m_folder(std::move(folder)), m_name(std::move(name)), m_file(std::move(file))
    {
    }

    QString Path() const override { return m_folder + u'/' + FileName::Decode(m_name); }

    QDateTime Written() const override
    {
        struct stat status = {};
        ::fstat(m_file.Number(), &status);
        return QDateTime::fromSecsSinceEpoch(status.st_mtime);
    }

    FileSystem::Content Read() const override { return ReadAll(m_file, LongestContent); }

    void Remove() override { PrivateFolder(m_folder).Remove(m_name, m_file); }

  private:
    QString m_folder;
    QByteArray m_name;
    Descriptor m_file;
};

} // namespace

QString SystemRecoveryFolder::UsualPath()
{
    return PrivateFolder::UsualPath("XDG_STATE_HOME", QStringLiteral(".local/state"));
}

RecoveryFolder::Kept SystemRecoveryFolder::Keep(QByteArrayView content)
{
    const PrivateFolder folder = PrivateFolder::Make(m_path);
    if (!folder.IsOpen())
        return {nullptr, SystemFailure()};
    folder.RemoveUnfinished(Prefix);
    const QByteArray name = NewName();
    Result created;
    Descriptor file = folder.Create(name, content, PrivateFolder::Safety::OfDisk, created);
    if (created.Failed())
        return {nullptr, created};
    return {std::make_unique<HeldFile>(m_path, name, std::move(file)), {}};
}

QStringList SystemRecoveryFolder::Names() const
{
    return QDir(m_path).entryList({Prefix + u'*' + Suffix}, QDir::Files,
                                  QDir::Name | QDir::Reversed);
}

std::unique_ptr<RecoveryFolder::File> SystemRecoveryFolder::Take(const QString &name)
{
    const PrivateFolder folder(m_path);
    if (!folder.IsOpen())
        return nullptr;
    Descriptor file = folder.Take(FileName::Encode(name), O_RDONLY);
    if (!file.IsOpen())
        return nullptr;
    return std::make_unique<HeldFile>(m_path, FileName::Encode(name), std::move(file));
}
