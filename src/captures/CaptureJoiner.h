// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QStringList>

/// Makes one capture of several that CaptureEncoder has made, in one section: other programs mix
/// up the interfaces of several. Where the ports change, the new ones follow as further interfaces
/// that tell their channels.
class CaptureJoiner final
{
  public:
    /// The notes become comments of the whole, in their order.
    explicit CaptureJoiner(QStringList notes = {}) : m_notes(std::move(notes)) {}

    /// Adds what becomes of the next bytes, up to the last block that is whole. Returns how many
    /// bytes that were; the rest is to be given again with what follows. Negative if what stands
    /// there is damaged, before anything has been added.
    qsizetype Append(QByteArray &joined, QByteArrayView bytes);

  private:
    void AppendBlock(QByteArray &joined, QByteArrayView block);
    void AppendInterfaces(QByteArray &joined);

    QStringList m_notes;
    bool m_begun = false;
    QList<QByteArray> m_told;    ///< interfaces of the capture that is joined now
    QList<QByteArray> m_inForce; ///< those that packets were last of
    int m_first = 0;             ///< place of them
    int m_count = 0;             ///< of all interfaces
};
