// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DisplaySettings.h"
#include "OptionsPage.h"

#include <QDialog>

#include <array>
#include <functional>
#include <memory>

class PortDevices;
class PortFinder;
class QCheckBox;
class QLabel;
class QPushButton;
class QStackedWidget;
class QTabBar;
class UserPrompts;

/// What the options dialog works with; what is referred to lives longer than the dialog.
struct OptionsParts {
    OptionsValues values;    ///< shown first
    DisplaySettings display; ///< colours and attributes of the next start
    UserPrompts &prompts;
    const PortDevices &devices;
    std::shared_ptr<const PortFinder> finder;
    /// OK or Apply: the values are the user's.
    std::function<void(const OptionsValues &)> ValuesConfirmed;
    /// A colour or attribute was chosen; Cancel does not take it back.
    std::function<void(const DisplaySettings &)> DisplayChosen;
    bool communicationStopped = false; ///< for the dialog's sake; it says so, and offers to start
};

/// The options dialog: four pages on a tab strip.
class frmOptions final : public QDialog
{
    Q_OBJECT

  public:
    explicit frmOptions(const OptionsParts &parts, QWidget *parent = nullptr);

    /// "OK"; the dialog stays open if a page refuses.
    void accept() override;

    /// Whether communication is to be started again, however the dialog was left.
    bool StartAgain() const;

  private:
    QLabel *MakeStoppedLine();
    void MakePages();
    void MakeButtons();
    void ShowValues();
    void NoteFocus(const QWidget *now);
    void CheckLeftFields();
    void Tell(size_t page, const OptionsFault &fault);
    bool FieldsAreRight(const QWidget *typing);
    bool MayConfirm();
    bool Confirm();

    OptionsParts m_parts;
    OptionsValues m_values; ///< confirmed last
    QTabBar *tbsOptions;
    QStackedWidget *m_frame;
    std::array<OptionsPage *, 4> picOptions{};
    QCheckBox *m_startAgain;
    QPushButton *cmdCancel;
    bool m_telling = false; ///< the user is being told of a fault
    QObject m_focusWatch;   ///< ends before the controls go, which moves the focus
};
