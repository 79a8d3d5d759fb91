// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <vector>

/// Takes apart what the system delivers with its marks: FF 00 x is a damaged byte x, FF 00 00 a
/// damaged byte 0 or a break, FF FF is the byte FF. A mark that is cut by the end of a read is
/// completed by the next.
class MarkedBytes
{
  public:
    /// What is decoded of one read.
    struct Read {
        QByteArray bytes;               ///< damaged ones among them, breaks not
        std::vector<qsizetype> damaged; ///< places of damaged bytes in bytes
        int breaks = 0;
    };

    /// Breaks in the marks that have been met so far, as the driver counted them; what is marked
    /// as 0 beyond that is a damaged byte. Without a counter every one is a break.
    void Forget() { m_held.clear(); }
    /// Whether a mark is cut.
    bool Holds() const { return !m_held.isEmpty(); }

    /// The count of the driver's breaks since the last call; negative where it has no counter.
    Read Decode(QByteArrayView marked, int newBreaks);

  private:
    QByteArray m_held; ///< the begin of a mark
};
