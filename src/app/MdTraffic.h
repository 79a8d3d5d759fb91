// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramBook.h"
#include "frmTraffic.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

class MdRecord;

/// What the window "Traffic" works with; all of it lives longer than MdTraffic.
struct MdTrafficParts {
    MdRecord &record;
    const DisplaySettings &display;
    TrafficWindowSettings &settings;
    std::function<QStringList()> devices; ///< of the ports that are open, by channel
};

/// The telegrams of what happens, and the window that shows them, which is made when it is first
/// asked for. They come from the session's record; where that does not take them, from memory. A
/// capture may take the place of both for a while.
class MdTraffic final : public QObject
{
    Q_OBJECT

  public:
    explicit MdTraffic(const MdTrafficParts &parts);
    ~MdTraffic() override;

    void Show();
    /// Null before it was first shown.
    frmTraffic *Window() const { return m_window.get(); }
    TelegramBook &Book() { return m_book; }

    /// Shows a capture, by the name that it has for the user, in the window.
    void ShowCapture(std::shared_ptr<const TelegramSource> capture, const QString &name);
    /// Shows again what happens.
    void ShowSession();
    bool ShowsCapture() const { return !m_capture.isEmpty(); }

    /// Puts the window's place into the settings.
    void StorePlace();

  Q_SIGNALS:
    /// The window has been made.
    void Made(frmTraffic &window);

  private:
    void Look();
    TrafficOrigin OriginNow() const;

    MdTrafficParts m_parts;
    TelegramBook m_book;
    std::unique_ptr<frmTraffic> m_window;
    QString m_capture; ///< name of what is shown; empty for the session
    QTimer m_timer;    ///< between two looks at how the record stands
};
