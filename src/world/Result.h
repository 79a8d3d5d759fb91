// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

#include <utility>

/// Why something could not be done.
struct Failure {
    QString cause;     ///< what was in the way, in the system's words or our own; never empty
    int number = 0;    ///< what a caller may decide by, such as FileAlreadyOpen; 0 for all else
    QString message{}; ///< what the user is told, where those who fail word it; else empty
};

/// How something went that can fail, and the one type for it: a default one is success, any other
/// is made from a Failure. It is no truth value, which could be read either way; callers write
///
///     if (const Result saved = file.Commit(); saved.Failed())
///         return saved;
///
/// A function that also has a value to give returns both in a struct. std::optional is for values
/// that may be missing without anything having failed. An object that can fail between two calls,
/// or as it is made, keeps its latest failure in State().
class [[nodiscard]] Result final
{
  public:
    Result() = default;
    Result(Failure failure) : m_failed(true), m_failure(std::move(failure)) {}

    bool Failed() const { return m_failed; }

    /// Those of the failure; empty and 0 after success.
    const QString &Cause() const { return m_failure.cause; }
    int Number() const { return m_failure.number; }
    const QString &Message() const { return m_failure.message; }

    /// For what is done as well as it can be: the caller goes on either way.
    void Ignore() const {}

  private:
    bool m_failed = false;
    Failure m_failure;
};
