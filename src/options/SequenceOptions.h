// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "OptionsPage.h"

class QComboBox;

/// The page "Display - 2": the representation of sequences in lists and on paper.
class SequenceOptions final : public OptionsPage
{
    Q_OBJECT

  public:
    SequenceOptions();

    void Show(const OptionsValues &values) override;
    void Store(OptionsValues &values) const override;

  private:
    QComboBox *m_representation;
};
