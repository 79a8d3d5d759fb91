// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PortDevices.h"
#include "PortNumber.h"

#include <QWidget>

#include <functional>

class QLabel;
class QLineEdit;
class QPushButton;

/// What a COM number means, in words: "COM3 is /dev/ttyS2 (system name)".
QString PortMeaningText(int comNumber, const PortDevices::Meaning &meaning);

/// The place for a COM number, with a button that leads to the devices.
class PortBox final : public QWidget
{
    Q_OBJECT

  public:
    PortBox(const char *boxName, const char *buttonName, const char *buttonCaption);

    /// Asked for what a number means.
    std::function<PortDevices::Meaning(int comNumber)> MeaningOf;

    /// Any stored number is shown, and is right as long as nobody types in the box.
    void Show(qint16 stored);
    /// The number in the box; the stored one if nobody has typed or no number can be read.
    qint16 Number() const;
    /// Whether the box was used and holds no COM number.
    bool IsFaulty() const;
    /// Puts the nearest COM number in the place of what was typed.
    void Correct();

    /// The tool tip says what the number means now.
    void UpdateMeaning();
    void SetAccessibleName(const QString &name);
    QLineEdit *Edit() const { return m_edit; }
    /// Says the same below the box. It is narrower than its text if need be.
    QLabel *Meaning() const { return m_meaning; }

  Q_SIGNALS:
    /// The button was pressed; the box may be faulty.
    void DevicesRequested();

  private:
    PortNumber Typed() const;

    QLineEdit *m_edit;
    QLabel *m_meaning;
    QPushButton *m_button;
    qint16 m_stored = LeastPortNumber;
};
