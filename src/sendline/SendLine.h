// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QTimer>
#include <QWidget>

class ChecksumChoice;
class MdSendLine;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QPushButton;
class RepeatChoice;
class SQEditSequence;

/// The line in which bytes are typed and sent without a sequence of the project. Enter sends, Up
/// and Down fetch what was sent before, Shift+Enter types CR. While nothing can be sent it is
/// disabled and says why. What it repeats ends when it is hidden, for then nobody would see it.
class SendLine final : public QWidget
{
    Q_OBJECT

  public:
    /// The line lives as long as the widget.
    explicit SendLine(MdSendLine &line, QWidget *parent = nullptr);

  Q_SIGNALS:
    /// The user wants a send sequence of these bytes.
    void KeepRequested(const QByteArray &telegram);
    /// Escape: back to what was done before.
    void Left();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void showEvent(QShowEvent *event) override;

  private:
    void MakeEntry(QHBoxLayout &row);
    void MakeAppendix(QHBoxLayout &row);
    void MakeRepeat(QHBoxLayout &row);
    void Connect();

    void FitEntry();
    void Send();
    void Repeat();
    void Keep();
    bool Fetch(int key);
    void StoreAppendix();
    void StorePlan();
    void Refresh();
    void ShowRepeat();
    QByteArray Typed() const;

    MdSendLine &m_line;
    QComboBox *cboForm;
    SQEditSequence *txtLine;
    QPushButton *cmdSend;
    QPushButton *cmdKeep;
    QLabel *lblWhy;
    ChecksumChoice *m_appendix;
    QLabel *lblAppended;
    RepeatChoice *m_plan;
    QPushButton *cmdRepeat;
    QLabel *lblRepeat;
    QTimer m_counting; ///< while something is repeated
};
