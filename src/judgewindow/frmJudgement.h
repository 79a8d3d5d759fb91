// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "JudgementText.h"
#include "PlaceTelegrams.h"

#include <QDialog>
#include <QFutureWatcher>

#include <functional>
#include <memory>

class QLabel;
class QSplitter;
class QTreeView;
class RowsModel;

/// What the window shows, and who saves its report.
struct JudgementParts {
    std::shared_ptr<const Judgement> judgement;
    std::shared_ptr<const InputDevice> file; ///< the capture, for the telegrams around a place
    JudgementText::Subjects subjects;
    std::function<void(const QString &report)> SaveReport;
};

/// The window "Judgement": what each receive sequence had of a capture, where, and the telegrams
/// around the place that is chosen. Not modal. The capture is read on a thread that may outlive the
/// window.
class frmJudgement final : public QDialog
{
    Q_OBJECT

  public:
    explicit frmJudgement(JudgementParts parts, QWidget *parent = nullptr);

  private:
    struct List {
        const char *name;
        const char *caption; ///< with its key
        RowsModel *model;
    };

    void MakeModels();
    QTreeView *MakeList(const List &list, QSplitter &splitter);
    QLayout *MakeFoot();
    QString Report() const;
    void GoToFirstPlace(int sequence);
    void ChoosePlace(int row);
    void ReadTelegrams();
    void ShowTelegrams();
    QString TelegramsCaption() const;

    JudgementParts m_parts;
    RowsModel *m_sequences = nullptr;
    RowsModel *m_places = nullptr;
    RowsModel *m_telegrams = nullptr;
    QTreeView *lstSequences = nullptr;
    QTreeView *lstPlaces = nullptr;
    QTreeView *lstTelegrams = nullptr;
    QLabel *lblTelegrams = nullptr;
    PlaceTelegrams m_around;
    int m_chosen = -1; ///< place whose telegrams are wanted
    int m_reading = -1;
    QFutureWatcher<PlaceTelegrams> m_watcher;
};
