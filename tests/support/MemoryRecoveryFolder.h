// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RecoveryFolder.h"

#include <QMap>
#include <QSet>

/// Recovery files in memory, by name. A test takes the part of other programs: what it puts here
/// was left behind, what it puts among the held as well has a program that lives.
class MemoryRecoveryFolder final : public RecoveryFolder
{
  public:
    QMap<QString, QByteArray> files;
    QSet<QString> held;
    QString fault; ///< not empty: nothing can be kept

    Kept Keep(QByteArrayView content) override
    {
        if (!fault.isEmpty())
            return {nullptr, Failure{fault}};
        const QString name = QStringLiteral("kept%1").arg(++m_count);
        files[name] = content.toByteArray();
        return {Take(name), {}};
    }
    QStringList Names() const override { return files.keys(); }
    std::unique_ptr<File> Take(const QString &name) override
    {
        if (!files.contains(name) || held.contains(name))
            return nullptr;
        held << name;
        return std::make_unique<Held>(*this, name);
    }

  private:
    class Held final : public File
    {
      public:
        Held(MemoryRecoveryFolder &folder, const QString &name) : m_folder(folder), m_name(name) {}
        ~Held() override { m_folder.held.remove(m_name); }
        QString Path() const override { return m_name; }
        QDateTime Written() const override { return QDate(2026, 3, 1).startOfDay(); }
        FileSystem::Content Read() const override { return {m_folder.files[m_name], {}}; }
        void Remove() override { m_folder.files.remove(m_name); }

      private:
        MemoryRecoveryFolder &m_folder;
        QString m_name;
    };

    int m_count = 0;
};
