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
    /// With a text for it, "none" can be chosen as well.
    explicit ChecksumChoice(const QString &none = {}, QWidget *parent = nullptr);

    /// Empty for none.
    std::optional<ChecksumRule> Rule() const;
    /// Raises no Changed. None is taken for the first kind where it cannot be chosen.
    void SetRule(const std::optional<ChecksumRule> &rule);

  Q_SIGNALS:
    void Changed();

  private:
    void MakeKinds(const QString &none);
    void MakeDetails(QHBoxLayout &row);
    void ChooseKind();
    void EnableDetails();

    QComboBox *cmbKind;
    QSpinBox *spnFirst;
    QComboBox *cmbOrder;
};
