// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramBookmarks.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class FileSystem;
class InputDevice;
class QLabel;
class QRadioButton;
class TelegramSource;
class TrafficActions;
class TrafficBookmarking;
class UserPrompts;
class frmTraffic;

/// What captures are opened with, and what can be done with them; all of it lives longer.
struct TrafficCaptureParts {
    QString &folder; ///< of captures, with trailing separator; empty before the first one
    FileSystem &files;
    UserPrompts &prompts;
    std::shared_ptr<TelegramBookmarks> bookmarks; ///< of what happens now
    /// Have the window show a capture, of that name, or what happens now.
    std::function<void(std::shared_ptr<const TelegramSource> capture, const QString &name)>
        ShowCapture;
    std::function<void()> ShowRecord;
    std::function<bool()> RecordHasTwoChannels; ///< what happens now
    std::function<void()> SaveRecord;
    /// A copy of the capture of that name with other bookmarks; false if there is none.
    std::function<bool(const std::shared_ptr<const InputDevice> &capture, const QString &name,
                       const QList<CaptureBookmark> &bookmarks)>
        SaveCopy;
    std::function<void(const QString &path, QWidget &owner)> Judge;
    std::function<void(const QString &path)> Replay;
};

/// Shows opened captures in the place of what happens now, and leads back. A line of its own tells
/// which of them is shown, once a capture has been opened.
class TrafficCaptures final : public QObject
{
    Q_OBJECT

  public:
    TrafficCaptures(frmTraffic &window, TrafficActions &actions, TrafficBookmarking &bookmarking,
                    TrafficCaptureParts parts);

    void Open(const QString &path);

    /// Asks what is to become of changed bookmarks, which are lost else. False: the user wants to
    /// stay, or what he wanted saved could not be saved.
    bool AskSaveBookmarks();

    /// Whether what is shown comes from two lines.
    bool TwoChannels() const;

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    struct Opened;

    void MakeBar();
    void Choose();
    void Save();
    bool SaveCopy();
    void ShowCapture();
    void ShowRecord();
    void ShowState();
    QString Name() const;

    frmTraffic &m_window;
    TrafficActions &m_actions;
    TrafficBookmarking &m_bookmarking;
    TrafficCaptureParts m_parts;
    QWidget *m_bar = nullptr; ///< of the window, like what stands in it
    QRadioButton *rdoRecord = nullptr;
    QRadioButton *rdoCapture = nullptr;
    bool m_showsCapture = false;
    QString m_path; ///< of the capture that was opened last
    std::shared_ptr<const Opened> m_capture;
    std::shared_ptr<TelegramBookmarks> m_bookmarks; ///< of that capture
};
