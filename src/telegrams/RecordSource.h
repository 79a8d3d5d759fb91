// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramSource.h"

#include <memory>

class RecordSegments;

/// The record of this session, while it is written; and what it has not taken, in its place.
class RecordSource final : public TelegramSource
{
  public:
    explicit RecordSource(std::shared_ptr<const RecordSegments> segments);

    QList<Part> Parts() const override;
    FileSystem::Opened Open(qint64 number) const override;
    bool Follows(qint64 part, qint64 next) const override;
    bool Grows() const override { return true; }
    bool IsInMemory() const override;

  private:
    const std::shared_ptr<const RecordSegments> m_segments;
};
