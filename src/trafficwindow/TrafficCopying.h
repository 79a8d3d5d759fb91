// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramExport.h"

#include <QObject>

#include <functional>

class TelegramBook;
class TrafficActions;
class UserPrompts;
struct RunState;
class frmTraffic;

/// What rows are copied and exported with; all of it lives longer.
struct TrafficCopyParts {
    QString &folder; ///< of exports, with trailing separator; empty before the first one
    OpenFiles &files;
    UserPrompts &prompts;
    const RunState &run;
    std::function<bool()> MaySend; ///< whether the mode in force lets anything be sent
    std::function<void(const QByteArray &bytes, QWidget &owner)> NewSendSequence;
    std::function<void(const QByteArray &bytes, QWidget &owner)> NewReceiveSequence;
};

/// Takes rows elsewhere: to the clipboard, into files, and as new sequences into the project.
class TrafficCopying final : public QObject
{
    Q_OBJECT

  public:
    TrafficCopying(frmTraffic &window, TrafficActions &actions, TrafficCopyParts parts);

    /// The end of the program has not waited for a disk.
    bool Hangs() const { return m_hangs; }

    /// More is not copied, in bytes of text.
    static constexpr qsizetype MostOfAClipboard = 16 * 1024 * 1024;

  private:
    using NewSequence = std::function<void(const QByteArray &bytes, QWidget &owner)>;

    void Copy(TelegramWriter::Form form);
    void Export(const QString &title, TelegramExport rows);
    QString ChooseFile(const QString &title);
    bool MayReplace(const QString &path, const QString &title);
    void MakeSequence(const NewSequence &make);
    void ShowState();
    TelegramExport All() const;
    TelegramExport Selected() const;

    frmTraffic &m_window;
    TelegramBook &m_book;
    TrafficActions &m_actions;
    TrafficCopyParts m_parts;
    bool m_hangs = false;
};
