// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ByteRate.h"
#include "LineStatus.h"
#include "PortIdentity.h"

#include <QGroupBox>

#include <array>

class Lamp;
class QCheckBox;
class QGridLayout;
class QLineEdit;

/// What is shown of one port: who it is, how it is set, its lines, and what has been counted. All
/// fields can be reached with the keyboard and read by assistive programs.
class LineStatusGroup final : public QGroupBox
{
    Q_OBJECT

  public:
    explicit LineStatusGroup(int channel, QWidget *parent = nullptr);

    /// The time is that of the look, in milliseconds.
    void Show(const LineStatus &line, qint64 time);
    void Identify(const PortIdentity &identity) { m_identity = identity; }

  Q_SIGNALS:
    /// The user wants it so; what comes of it is seen with the next Show.
    void SwitchWanted(OwnLine line, bool on);

  private:
    void MakeFields();
    void MakeLamps();
    void MakeSwitches();
    QLineEdit *MakeField(const char *name);
    QString NameOf(const char *part) const;

    QGridLayout *m_grid;
    const int m_channel;
    PortIdentity m_identity;
    std::array<ByteRate, 2> m_rates; ///< received, sent
    QList<QLineEdit *> m_fields;     ///< in the order of the tables
    std::array<Lamp *, 4> m_lamps{};
    std::array<QCheckBox *, 2> m_switches{}; ///< by OwnLine
};
