// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramExport.h"

#include <QObject>

#include <functional>

class TelegramBook;
class TrafficActions;
class TrafficExporting;
class frmTraffic;

/// What rows are made sequences with; all of it lives longer.
struct TrafficCopyParts {
    std::function<bool()> MaySend; ///< whether the mode in force lets anything be sent
    std::function<void(const QByteArray &bytes, QWidget &owner)> NewSendSequence;
    std::function<void(const QByteArray &bytes, QWidget &owner)> NewReceiveSequence;
};

/// Takes rows elsewhere: to the clipboard, into files, and as new sequences into the project.
class TrafficCopying final : public QObject
{
    Q_OBJECT

  public:
    /// All of it lives longer.
    TrafficCopying(frmTraffic &window, TrafficActions &actions, TrafficExporting &exporting,
                   TrafficCopyParts parts);

    /// More is not copied, in bytes of text.
    static constexpr qsizetype MostOfAClipboard = 16 * 1024 * 1024;

  private:
    using NewSequence = std::function<void(const QByteArray &bytes, QWidget &owner)>;

    void Copy(TelegramWriter::Form form);
    void Export(const QString &title, TelegramExport rows);
    void MakeSequence(const NewSequence &make);
    void ShowState();
    TelegramExport All() const;
    TelegramExport Selected() const;

    frmTraffic &m_window;
    TelegramBook &m_book;
    TrafficActions &m_actions;
    TrafficExporting &m_exporting;
    TrafficCopyParts m_parts;
};
