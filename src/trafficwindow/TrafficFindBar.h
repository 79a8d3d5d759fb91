// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramFilter.h"

#include <QStringList>
#include <QWidget>

#include <functional>
#include <optional>

class ByteField;
class QComboBox;
class QLabel;
class QPushButton;
class QStackedWidget;

/// One line below the rows: what is looked for in them, and how that goes. It searches nothing
/// itself.
class TrafficFindBar final : public QWidget
{
    Q_OBJECT

  public:
    /// Names of sequences are asked for when the bar is opened.
    explicit TrafficFindBar(std::function<QStringList()> names, QWidget *parent = nullptr);

    /// Shows the bar, with the keyboard in its field.
    void Open();

    /// What is looked for; nothing if that is not complete, which the bar then says.
    std::optional<TelegramSearch> Search();

    /// While it is looked for it can be given up.
    void ShowSearching();
    void ShowFound();
    /// That nothing more was found in a direction; offers to go on from the other end. It does not
    /// if all rows were looked at.
    void ShowNotFound(bool forward, bool inAll);
    void ShowFailure(const QString &text);

  Q_SIGNALS:
    void Wanted(bool forward);
    /// The same from the first row, or backwards from the last.
    void WantedFromEnd(bool forward);
    void GivenUp();
    void Closed();

  protected:
    void keyPressEvent(QKeyEvent *event) override;

  private:
    void MakeFields();
    void MakeButtons();
    void LayOut();
    void ChooseKind(int kind);
    void Say(const QString &text, bool canWrap = false);
    void Close();

    std::function<QStringList()> m_names;
    QComboBox *cboFindKind;
    QStackedWidget *m_fields;
    ByteField *txtFind;
    QComboBox *cboFindName;
    QComboBox *cboFindMark;
    QPushButton *cmdNext;
    QPushButton *cmdPrevious;
    QPushButton *cmdWrap;
    QPushButton *cmdGiveUp;
    QPushButton *cmdCloseFind;
    QLabel *lblFind;
    bool m_forward = true; ///< of the latest search
};
