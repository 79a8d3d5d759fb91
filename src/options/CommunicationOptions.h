// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "OptionsPage.h"
#include "PortDevices.h"
#include "PortFinder.h"

#include <array>
#include <memory>

class PortBox;
class QComboBox;
class QLabel;
class QRadioButton;
class QVBoxLayout;
class UserPrompts;

/// The page "Communication": mode, ports and line settings.
class CommunicationOptions final : public OptionsPage
{
    Q_OBJECT

  public:
    /// Devices and prompts live longer than the page.
    CommunicationOptions(const PortDevices &devices, std::shared_ptr<const PortFinder> finder,
                         UserPrompts &prompts);

    /// Asked before the devices are shown: tells the user of a field that is wrong, if one is.
    std::function<bool()> FieldsAreRight = [] { return true; };

    void Show(const OptionsValues &values) override;
    /// What the command line had put in the place of these settings ends.
    void Store(OptionsValues &values) const override;
    std::optional<OptionsFault> FaultyField(const QWidget *typing) override;
    std::optional<OptionsFault> Conflict() override;

  private:
    void MakeModes(QVBoxLayout *column);
    void MakePorts(QVBoxLayout *column);
    void MakeLists(QVBoxLayout *column);
    void ShowMode();
    PortDevices::Meaning MeaningOf(int comNumber) const;
    void ChooseDevice(const PortBox &box);

    const PortDevices &m_devices;
    std::shared_ptr<const PortFinder> m_finder;
    UserPrompts &m_prompts;
    qint32 m_mode = 0;             ///< as stored until the user chooses
    bool m_reopens = false;        ///< as stored until the user chooses
    qint32 m_deadSeconds = 0;      ///< the same
    QMap<int, QString> m_assigned; ///< in this dialog
    std::array<QRadioButton *, 2> m_modes{};
    QLabel *m_captionSendReceive;
    QLabel *m_captionChannel1;
    QLabel *m_captionChannel2;
    PortBox *m_portA;
    PortBox *m_portB;
    std::array<QComboBox *, 4> m_lists{};
    QLabel *lblRun; ///< what the command line has put in the place of these settings
};
