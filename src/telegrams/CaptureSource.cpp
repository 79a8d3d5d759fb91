// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureSource.h"

namespace
{

/// The same file, for one more who reads it.
class SharedFile final : public InputDevice
{
  public:
    explicit SharedFile(std::shared_ptr<const InputDevice> file) : m_file(std::move(file)) {}

    Given ReadAt(qint64 place, char *bytes, qint64 most) const override
    {
        return m_file->ReadAt(place, bytes, most);
    }
    qint64 Size() const override { return m_file->Size(); }

  private:
    const std::shared_ptr<const InputDevice> m_file;
};

} // namespace

FileSystem::Opened CaptureSource::Open(qint64 /*number*/) const
{
    return {std::make_unique<SharedFile>(m_file), {}};
}
