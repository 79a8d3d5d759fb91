// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ResponseBook.h"

#include <QWidget>

class HistogramPlot;
class PointsPlot;
class QBoxLayout;
class QCheckBox;
class QLabel;
class QPushButton;
class QSortFilterProxyModel;
class QSpinBox;
class QSplitter;
class QTreeView;
class ResponsesModel;
struct ResponseWindowSettings;

/// The window "Response Times": how often each sequence was sent and answered, how long that took,
/// and plots of the one that is chosen.
class frmResponses final : public QWidget
{
    Q_OBJECT

  public:
    /// Settings live longer; the window belongs to its parent and stands by itself.
    frmResponses(ResponseWindowSettings &settings, QWidget *parent);
    ~frmResponses() override;

    /// What is counted from now on, from its beginning; null for nothing.
    void Count(std::shared_ptr<const TelegramSource> source, const TelegramRule &rule);
    const ResponseBook &Book() const { return m_book; }
    /// Where it comes from, for the user.
    void ShowOrigin(const QString &text);
    /// Puts the window's place into the settings.
    void StorePlace();

  Q_SIGNALS:
    /// A telegram is to be shown, by its number.
    void RowWanted(qint64 number);
    // To be saved as comma-separated values: what is in the table, or every time there is.
    void TableWanted();
    void TimesWanted();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

  private:
    void MakeList();
    int UsualWidth(int column) const;
    void MakeFoot(QBoxLayout &foot);
    void MakeButtons(QBoxLayout &buttons);
    void CountFrom(qint64 since);
    void TakeLimit();
    void ShowReport();
    void ShowPlots();
    void ShowState();
    void Choose();
    void ChooseAgain();

    ResponseWindowSettings &m_settings;
    ResponseBook m_book;
    std::optional<ResponseKey> m_chosen;
    QString m_origin;
    bool m_isNew = false; ///< what is counted: nothing of it has been shown whole
    ResponsesModel *m_model;
    QSortFilterProxyModel *m_sorted;
    QSplitter *m_splitter;
    QTreeView *lstResponses;
    PointsPlot *m_points;
    HistogramPlot *m_histogram;
    QLabel *lblState;
    QSpinBox *spnLimit;
    QCheckBox *chkLogarithmic;
    QPushButton *cmdReset;
    QPushButton *cmdCountAll;
    QPushButton *cmdSaveTable;
    QPushButton *cmdSaveTimes;
};
