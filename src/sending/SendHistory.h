// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

/// What was sent by hand, the newest last, and a place in it: going back from what is being typed
/// keeps that, and coming forward again brings it back.
class SendHistory final
{
  public:
    static constexpr qsizetype Most = 100;

    /// It becomes the newest one, wherever it stood before; the place is behind it.
    void Add(const QByteArray &bytes);
    /// Empty if there is none.
    QByteArray Newest() const { return m_sent.isEmpty() ? QByteArray() : m_sent.last(); }

    /// The one before, or behind; empty at the ends. "Shown" is what stands there now.
    std::optional<QByteArray> Earlier(const QByteArray &shown);
    std::optional<QByteArray> Later();

  private:
    QList<QByteArray> m_sent;
    qsizetype m_place = 0; ///< in m_sent; behind the last: what is being typed
    QByteArray m_typed;
};
