// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DisplaySettings.h"
#include "OptionsPage.h"

#include <array>
#include <functional>

class ColourBox;
class QCheckBox;
class QGridLayout;
class QVBoxLayout;
class UserPrompts;

/// The page "Display - 1": colours and attributes of the communication window, and stamps.
/// Colours and attributes do not wait for OK; each choice is told at once.
class DisplayOptions final : public OptionsPage
{
    Q_OBJECT

  public:
    /// The colours and attributes of the next start. The prompts live longer than the page.
    DisplayOptions(const DisplaySettings &display, UserPrompts &prompts,
                   std::function<void(const DisplaySettings &)> displayChosen);

    void Show(const OptionsValues &values) override;
    void Store(OptionsValues &values) const override;

  private:
    void MakeColours(QVBoxLayout *column);
    void MakeStyle(QGridLayout *grid, int style);
    ColourBox *MakeColour(const char *name, const char *caption, qint32 &colour);
    void MakeStamps(QVBoxLayout *column);
    void ShowWhatStampsDo();

    DisplaySettings m_display;
    UserPrompts &m_prompts;
    std::function<void(const DisplaySettings &)> m_displayChosen;
    std::array<QCheckBox *, 3> m_stamps{}; ///< date, time, line break
};
