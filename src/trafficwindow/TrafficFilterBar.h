// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "TelegramFilter.h"

#include <QList>
#include <QStringList>
#include <QTimer>
#include <QWidget>

#include <functional>

class ByteField;
class QAction;
class QComboBox;
class QLabel;
class QPushButton;
class QSpinBox;
class QToolButton;

/// Lines above the rows: which of them are shown, and how many that are. What is changed here holds
/// at once; a field in which something is typed waits for a pause or for Enter. It filters nothing
/// itself.
class TrafficFilterBar final : public QWidget
{
    Q_OBJECT

  public:
    /// Names of sequences are asked for when the bar is opened.
    explicit TrafficFilterBar(std::function<QStringList()> names, QWidget *parent = nullptr);

    /// Shows the bar, with the keyboard in its first field.
    void Open();

    /// What the two directions are called, by StyleIndex.
    void SetDirections(const QStringList &captions);
    /// The bar as a filter that is in force; nothing is told of it.
    void ShowFilter(const TelegramFilter &filter);
    void ShowCount(qint64 shown, qint64 all);

    const TelegramFilter &Filter() const { return m_filter; }
    /// Lets all rows through, and goes.
    void TakeOff();

    /// How long a field waits for what else is typed.
    static constexpr int PauseMilliseconds = 400;

  Q_SIGNALS:
    void Changed(const TelegramFilter &filter);
    /// The bar has taken itself off; the filter is empty.
    void Closed();

  protected:
    void keyPressEvent(QKeyEvent *event) override;

  private:
    void MakeFields();
    void MakeContains();
    void MakeMarks();
    void LayOut();
    TelegramFilter Read() const;
    void Apply();
    void ApplyAfterPause();
    void ShowMarks();

    std::function<QStringList()> m_names;
    TelegramFilter m_filter;
    bool m_showing = false; ///< a filter, not the user's hand
    QTimer m_pause;
    QComboBox *cboDirection;
    QComboBox *cboFilterName;
    QSpinBox *txtLeast;
    QSpinBox *txtMost;
    QComboBox *cboContains;
    ByteField *txtContains;
    QToolButton *cmdMarks;
    QList<QAction *> m_marks; ///< in the order of TrafficMarks
    QPushButton *cmdFilterOff;
    QLabel *lblCount;
    QLabel *lblRefusal;
};
