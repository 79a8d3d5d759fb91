// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "OptionsPage.h"
#include "Representation.h"

#include <array>

class QCheckBox;
class QRadioButton;
class QVBoxLayout;

/// The page "Logging": which log files are written.
class LoggingOptions final : public OptionsPage
{
    Q_OBJECT

  public:
    LoggingOptions();

    void Show(const OptionsValues &values) override;
    void Store(OptionsValues &values) const override;

  private:
    void MakeFiles(QVBoxLayout *column);
    void MakeFormats(QVBoxLayout *column);

    qint16 m_format = 0; ///< as stored until the user chooses
    std::array<QCheckBox *, RepresentationCount> m_files{};
    std::array<QRadioButton *, 2> LogFileOption{};
};
