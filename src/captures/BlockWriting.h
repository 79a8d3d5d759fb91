// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CaptureFormat.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QtEndian>

#include <algorithm>

/// The parts of pcapng's blocks, appended to what is there; little endian unless it is said.
namespace BlockWriting
{

constexpr qsizetype LongestOption = 0xFFFF;

template <typename Number>
void AppendNumber(QByteArray &bytes, Number number, bool bigEndian = false)
{
    number = bigEndian ? qToBigEndian(number) : qToLittleEndian(number);
    bytes.append(reinterpret_cast<const char *>(&number), sizeof number);
}

constexpr qsizetype Padded(qsizetype size)
{
    return (size + CaptureFormat::Alignment - 1) / CaptureFormat::Alignment *
           CaptureFormat::Alignment;
}

inline void Pad(QByteArray &bytes)
{
    bytes.append(Padded(bytes.size()) - bytes.size(), '\0');
}

/// A longer value is cut.
inline void AppendOption(QByteArray &options, quint16 code, QByteArrayView value,
                         bool bigEndian = false)
{
    value = value.first(std::min(value.size(), LongestOption));
    AppendNumber(options, code, bigEndian);
    AppendNumber(options, quint16(value.size()), bigEndian);
    options.append(value);
    Pad(options);
}

/// None have no end.
inline void EndOptions(QByteArray &options)
{
    if (!options.isEmpty())
        AppendNumber(options, quint32(CaptureFormat::EndOfOptions));
}

/// What stands in a section's header before its options.
inline void AppendSectionHead(QByteArray &body)
{
    AppendNumber(body, CaptureFormat::ByteOrderMagic);
    AppendNumber(body, quint16(1)); // version 1.0
    AppendNumber(body, quint16(0));
    AppendNumber(body, qint64(-1)); // its length is not known yet
}

/// The body is whole, options included.
inline void AppendBlock(QByteArray &capture, quint32 type, QByteArrayView body,
                        bool bigEndian = false)
{
    const auto length = quint32(body.size() + CaptureFormat::BlockFrame);
    AppendNumber(capture, type, bigEndian);
    AppendNumber(capture, length, bigEndian);
    capture.append(body);
    AppendNumber(capture, length, bigEndian);
}

} // namespace BlockWriting
