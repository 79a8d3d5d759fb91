// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QList>
#include <QString>

/// Makes one capture of several that CaptureEncoder has made, in one section: other programs mix
/// up the interfaces of several. Where the ports change, the new ones follow as further interfaces
/// that tell their channels.
class CaptureJoiner final
{
  public:
    /// The note becomes the comment of the whole; empty for none.
    explicit CaptureJoiner(QString note) : m_note(std::move(note)) {}

    /// Adds what becomes of the next bytes, up to the last block that is whole. Returns how many
    /// bytes that were; the rest is to be given again with what follows. Negative if what stands
    /// there is damaged, before anything has been added.
    qsizetype Append(QByteArray &joined, QByteArrayView bytes);

  private:
    void AppendBlock(QByteArray &joined, QByteArrayView block);
    void AppendInterfaces(QByteArray &joined);

    QString m_note;
    bool m_begun = false;
    QList<QByteArray> m_told;    ///< interfaces of the capture that is joined now
    QList<QByteArray> m_inForce; ///< those that packets were last of
    int m_first = 0;             ///< place of them
    int m_count = 0;             ///< of all interfaces
};
