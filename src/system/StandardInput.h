// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QObject>

#include <memory>

class QSocketNotifier;

/// Standard input, line by line, as it comes.
class StandardInput final : public QObject
{
    Q_OBJECT

  public:
    /// Of one line.
    static constexpr qsizetype MostBytes = 1024 * 1024;

    StandardInput();
    ~StandardInput() override;

    void Start();
    /// Whoever has enough for now lets it wait.
    void SetReading(bool on);

  Q_SIGNALS:
    /// Without its line end.
    void LineRead(const QByteArray &line);
    /// It is left out.
    void LineTooLong();
    void Ended();

  private:
    void Read();
    void EndLine();

    std::unique_ptr<QSocketNotifier> m_notifier;
    QByteArray m_line; ///< not complete yet
    bool m_tooLong = false;
};
