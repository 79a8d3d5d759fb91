// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Checksum.h"

#include <QDialog>

class ChecksumChoice;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

/// Asks which checksum is to be inserted into a sequence and up to which byte it is made, and shows
/// its bytes beforehand.
class frmInsertChecksum final : public QDialog
{
    Q_OBJECT

  public:
    /// It is offered up to the byte with the number "last"; 0 stands for the end.
    frmInsertChecksum(QByteArray sequence, qsizetype last, const ChecksumRule &rule,
                      QWidget *parent);

    ChecksumRule Rule() const;
    /// Behind which byte the checksum has its place.
    qsizetype Last() const;
    /// What is to be inserted there; empty if there is nothing that it can be made of.
    QByteArray Bytes() const;

  private:
    void Refresh();

    const QByteArray m_sequence;
    ChecksumChoice *m_choice;
    QSpinBox *spnLast;
    QLineEdit *txtBytes;
    QLabel *lblWhy;
    QPushButton *cmdOK;
};
