// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Checksum.h"

#include <array>
#include <optional>

/// What the send line puts behind the bytes that are typed: fixed bytes or a checksum.
struct SendAppendix {
    struct Fixed {
        const char *caption;
        const char *name; ///< in the settings store
        const char *bytes;
    };
    static constexpr std::array<Fixed, 4> FixedOnes = {{{"nothing", "nothing", ""},
                                                        {"CR", "cr", "\r"},
                                                        {"LF", "lf", "\n"},
                                                        {"CR LF", "crlf", "\r\n"}}};

    int fixed = 0; ///< a place in FixedOnes, unless there is a checksum
    std::optional<ChecksumRule> checksum{};

    bool operator==(const SendAppendix &) const = default;

    /// The bytes behind these. A frame of characters is closed by CR and LF behind its checksum.
    /// Empty where there is no checksum of the bytes, too: WhyNone.
    QByteArray Of(QByteArrayView bytes) const;
    /// Why there is no checksum of these bytes; empty if there is one, or none is wanted.
    QString WhyNone(QByteArrayView bytes) const;

    QString Stored() const;
    /// A text without a meaning appends nothing.
    static SendAppendix Restored(const QString &stored);
};
