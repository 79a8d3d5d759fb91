// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramSource.h"

#include <memory>

/// One capture that is whole.
class CaptureSource final : public TelegramSource
{
  public:
    explicit CaptureSource(std::shared_ptr<const InputDevice> file)
        : m_file(std::move(file)), m_size(m_file->Size())
    {
    }

    QList<Part> Parts() const override { return {{0, m_size}}; }
    FileSystem::Opened Open(qint64 number) const override;
    bool Grows() const override { return false; }

  private:
    const std::shared_ptr<const InputDevice> m_file;
    const qint64 m_size;
};
