// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QList>
#include <QTimer>

class MdRecord;
class QGridLayout;
class QLineEdit;
class QPushButton;
class QSpinBox;

/// The dialog "Session Record": since when there is a record, how large it is, what has gone of it,
/// and how much may be kept, which is in force as soon as it is entered.
class frmSessionRecord final : public QDialog
{
    Q_OBJECT

  public:
    /// The record lives longer than the dialog; most is its bound in MiB.
    frmSessionRecord(MdRecord &record, const qint32 &most, QWidget *parent = nullptr);

    /// Between two looks at the record.
    static constexpr int RefreshMilliseconds = 500;

  private:
    void MakeFields(QGridLayout &grid);
    void MakeBound(QGridLayout &grid);
    void Refresh();
    void ChangeBound();

    MdRecord &m_record;
    const qint32 &m_most;
    QList<QLineEdit *> m_fields; ///< in the order of their table
    QSpinBox *spnBound = nullptr;
    QPushButton *cmdSave;
    QTimer m_timer;
};
