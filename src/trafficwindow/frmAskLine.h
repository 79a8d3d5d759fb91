// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QDialog>
#include <QString>

#include <functional>

class QLineEdit;
class QuietLine;

/// What a dialog for one line of text asks.
struct AskedLine {
    QString name; ///< of the dialog, as an object
    QString title;
    QString caption; ///< of the field, with its key
    QString hint;    ///< what may be typed
    QString text;    ///< that stands there at first
    /// Why the text will not do, empty if it does.
    std::function<QString(const QString &text)> Fault = [](const QString &) { return QString(); };
};

/// Asks for one line of text, and takes none that will not do.
class frmAskLine final : public QDialog
{
    Q_OBJECT

  public:
    explicit frmAskLine(AskedLine asked, QWidget *parent);

    QString Text() const;
    void accept() override;

  private:
    AskedLine m_asked;
    QLineEdit *txtLine;
    QuietLine *m_fault;
};
