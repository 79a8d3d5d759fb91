// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramBook.h"

#include <QObject>

#include <memory>

class MdRecord;
class TrafficStream;
class frmTraffic;
struct DisplaySettings;
struct TrafficWindowSettings;

/// What the window "Traffic" works with; all of it lives longer than MdTraffic.
struct MdTrafficParts {
    MdRecord &record;
    const DisplaySettings &display;
    TrafficWindowSettings &settings;
    TrafficStream &stream;
};

/// The telegrams of what happens and of captures, and the window that shows them, which is made
/// when it is first asked for.
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

    /// Puts the window's place into the settings.
    void StorePlace();

  private:
    MdTrafficParts m_parts;
    TelegramBook m_book;
    std::unique_ptr<frmTraffic> m_window;
};
