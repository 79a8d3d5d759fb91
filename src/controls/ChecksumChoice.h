// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Checksum.h"

#include <QWidget>

#include <optional>

class QComboBox;
class QHBoxLayout;
class QSpinBox;

/// Where a checksum is chosen: its kind, the byte from which on it is made, the order of its bytes.
/// What a kind leaves no choice of is disabled.
class ChecksumChoice final : public QWidget
{
    Q_OBJECT

  public:
    /// What can be chosen in the place of a checksum stands before the kinds, such as "none".
    explicit ChecksumChoice(const QStringList &others = {}, QWidget *parent = nullptr);

    /// Empty while something else is chosen.
    std::optional<ChecksumRule> Rule() const;
    /// The place of something else in the list of those; -1 while a checksum is chosen.
    int Other() const;

    /// They raise no Changed. No rule is taken for the first entry.
    void SetRule(const std::optional<ChecksumRule> &rule);
    void SetOther(int other);

  Q_SIGNALS:
    void Changed();

  private:
    void MakeKinds(const QStringList &others);
    void MakeDetails(QHBoxLayout &row);
    void ChooseKind();
    void EnableDetails();

    const int m_others;
    QComboBox *cboKind;
    QSpinBox *spnFirst;
    QComboBox *cboOrder;
};
