// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileSystem.h"

#include <csignal>

/// The computer's files, until the process is killed just before a step. Steps are counted from 0
/// and are: making the file, each write, the sync and taking the place.
class KillingFiles final : public FileSystem
{
  public:
    /// Never for a negative step.
    KillingFiles(FileSystem &real, int step) : m_real(real), m_stepsLeft(step) {}

    Created Create(const QString &path) override { return m_real.Create(path); }
    Created CreateBeside(const QString &path) override
    {
        Step();
        Created created = m_real.CreateBeside(path);
        if (created.device)
            created.device = std::make_unique<Device>(*this, std::move(created.device));
        return created;
    }
    Content Read(const QString &path, qint64 limit) override { return m_real.Read(path, limit); }
    bool Exists(const QString &path) const override { return m_real.Exists(path); }
    void Remove(const QString &path) override { m_real.Remove(path); }
    QString CanonicalPath(const QString &path) const override { return m_real.CanonicalPath(path); }

  private:
    class Device final : public OutputDevice
    {
      public:
        Device(KillingFiles &files, std::unique_ptr<OutputDevice> real)
            : m_files(files), m_real(std::move(real))
        {
        }
        Taken Write(QByteArrayView bytes) override
        {
            m_files.Step();
            return m_real->Write(bytes.first(std::min<qsizetype>(bytes.size(), 20000)));
        }
        FileResult Sync() override
        {
            m_files.Step();
            return m_real->Sync();
        }
        qint64 Size() const override { return m_real->Size(); }
        FileResult TakePlace() override
        {
            m_files.Step();
            return m_real->TakePlace();
        }

      private:
        KillingFiles &m_files;
        std::unique_ptr<OutputDevice> m_real;
    };

    void Step()
    {
        if (m_stepsLeft-- == 0)
            std::raise(SIGKILL);
    }

    FileSystem &m_real;
    int m_stepsLeft;
};
