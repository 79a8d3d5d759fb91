// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramRule.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSpinBox;

/// The dialog "Where Telegrams End": takes a rule and gives one back.
class frmTelegramRule final : public QDialog
{
    Q_OBJECT

  public:
    explicit frmTelegramRule(const TelegramRule &rule, QWidget *parent = nullptr);

    TelegramRule Rule() const;
    /// A rule in a few words, for a button.
    static QString Summary(const TelegramRule &rule);

    void accept() override;

  private:
    QWidget *MakeEnds();
    QWidget *MakeChecksum();
    void Show(const TelegramRule &rule);
    void ShowChecksum(int index);
    void EnableFields();

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
