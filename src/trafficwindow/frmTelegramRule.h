// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Checksum.h"
#include "TelegramRule.h"

#include <QDialog>

#include <optional>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSpinBox;

/// Where telegrams end, and what they are checked for.
struct TelegramRules {
    TelegramRule ends;
    std::optional<ChecksumRule> checksum;

    bool operator==(const TelegramRules &) const = default;
};

/// The dialog "Where Telegrams End": takes rules and gives rules back.
class frmTelegramRule final : public QDialog
{
    Q_OBJECT

  public:
    explicit frmTelegramRule(const TelegramRules &rules, QWidget *parent = nullptr);

    TelegramRules Rules() const;
    /// The rules in a few words, for a button.
    static QString Summary(const TelegramRules &rules);

    void accept() override;

  private:
    QWidget *MakeEnds();
    QWidget *MakeChecksum();
    void Show(const TelegramRules &rules);
    void ShowChecksum(int index);
    void EnableFields();

    TelegramRules m_rules; ///< as they were given
    QRadioButton *rdoAutomatic;
    QRadioButton *rdoGap;
    QRadioButton *rdoNoGap;
    QDoubleSpinBox *txtGap;
    QCheckBox *chkEndMark;
    QLineEdit *txtEndMark;
    QCheckBox *chkLength;
    QSpinBox *txtLength;
    QCheckBox *chkDetection;
    QComboBox *cboChecksum;
    QSpinBox *txtFirst;
    QCheckBox *chkHighFirst;
    QLabel *lblRefusal;
};
