// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class InputDevice;

/// The header of a section of pcapng, as any program has written it and in either byte order. Its
/// comments can be read and replaced; whatever else it says stays as it is.
class CaptureSection final
{
  public:
    /// The one that a capture begins with; nothing if it begins with none, or with damage.
    static std::optional<CaptureSection> Of(const InputDevice &capture);
    /// Says nothing yet, little endian.
    static CaptureSection New();

    /// In the file, in bytes.
    qsizetype Length() const { return m_block.size(); }
    QStringList Comments() const;
    /// The block with more comments, in front of all others, and without those that are given up.
    QByteArray With(const QStringList &comments,
                    const std::function<bool(const QString &comment)> &isGivenUp) const;

  private:
    struct Option {
        quint16 code = 0;
        quint16 length = 0;   ///< of its value
        QByteArrayView whole; ///< with head and padding

        QString Text() const;
    };
    /// Up to their end, or to what is none.
    QList<Option> Options() const;

    CaptureSection(QByteArray block, bool bigEndian);

    QByteArray m_block;
    bool m_bigEndian;
};
