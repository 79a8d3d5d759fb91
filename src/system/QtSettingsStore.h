// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "IniText.h"
#include "OpenFiles.h"
#include "SettingsStore.h"

/// The per-user store of the system, under "Serimonde": a file in the toolkit's form, read by the
/// toolkit and written by the program itself, whole or not at all. Programs that end together
/// leave what each of them has changed. A file that cannot be read is never written over.
class QtSettingsStore final : public SettingsStore
{
  public:
    /// Where the store of this user is.
    static QString UserPath();

    /// Reads the file, which need not exist; nothing is written before Flush. The file system must
    /// outlive the store.
    QtSettingsStore(FileSystem &fileSystem, QString path);

    std::optional<QString> Read(const QString &section, const QString &key) const override;
    QList<Entry> ReadSection(const QString &section) const override;
    void Write(const QString &section, const QString &key, const QString &text) override;
    Result Flush() override;
    QString Place() const override { return m_path; }

    /// How the reading went; the cause of a failure names the file.
    const Result &State() const { return m_state; }

  private:
    Result ReadFile();
    IniText::Texts Merged() const;
    Failure Named(const Result &result, const char *sequel = "") const;

    QString m_path;
    OpenFiles m_files;
    QByteArray m_bytes;       ///< of the file, as last read or written
    IniText::Texts m_stored;  ///< what they say
    IniText::Texts m_changed; ///< what this program has made of it since
    Result m_state;
};

/// The settings file when it has been set aside, so that the program starts with defaults.
struct SetAside {
    QString kept; ///< where the old file is now; empty if there was none
    Result result;
};

/// Renames the settings file to a free name beside it, whatever is in it or wrong with it.
SetAside SetSettingsAside(FileSystem &fileSystem, const QString &path);
