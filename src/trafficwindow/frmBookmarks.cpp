// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmBookmarks.h"

#include "BookmarksModel.h"
#include "NamedButton.h"
#include "TelegramBookmarks.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QShortcut>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

namespace
{

constexpr QSize UsualSize(460, 300);

} // namespace

frmBookmarks::frmBookmarks(std::shared_ptr<TelegramBookmarks> bookmarks, QWidget *parent)
    : QDialog(parent),
      m_bookmarks(std::move(bookmarks)),
      m_model(new BookmarksModel(m_bookmarks, this)),
      lstBookmarks(new QTreeView),
      cmdGo(NamedButton("cmdGo", "&Go To")),
      cmdNote(NamedButton("cmdNote", "Edit &Note")),
      cmdRemove(NamedButton("cmdRemove", "&Remove"))
{
    setObjectName(QStringLiteral("frmBookmarks"));
    setWindowTitle(QStringLiteral("Bookmarks"));
    MakeList();
    MakeButtons();
    resize(UsualSize);
    ShowState();
}

void frmBookmarks::MakeList()
{
    lstBookmarks->setObjectName(QStringLiteral("lstBookmarks"));
    lstBookmarks->setModel(m_model);
    lstBookmarks->setRootIsDecorated(false);
    lstBookmarks->setUniformRowHeights(true);
    lstBookmarks->setAllColumnsShowFocus(true);
    lstBookmarks->setEditTriggers(QAbstractItemView::EditKeyPressed);
    lstBookmarks->header()->setSectionResizeMode(BookmarksModel::Time,
                                                 QHeaderView::ResizeToContents);
    auto *caption = new QLabel(QStringLiteral("&Bookmarks"));
    caption->setBuddy(lstBookmarks);
    auto *column = new QVBoxLayout(this);
    column->addWidget(caption);
    column->addWidget(lstBookmarks, 1);
    connect(lstBookmarks, &QTreeView::activated, this, &frmBookmarks::Go);
    auto *erase = new QShortcut(QKeySequence(QKeySequence::Delete), lstBookmarks);
    erase->setContext(Qt::WidgetShortcut);
    connect(erase, &QShortcut::activated, this, &frmBookmarks::Remove);
    connect(m_model, &QAbstractItemModel::modelReset, this, &frmBookmarks::ShowState);
    connect(lstBookmarks->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &frmBookmarks::ShowState);
    lstBookmarks->setCurrentIndex(m_model->index(0, BookmarksModel::Note));
}

void frmBookmarks::MakeButtons()
{
    QPushButton *cmdClose = NamedButton("cmdClose", "Close");
    cmdNote->setToolTip(QStringLiteral("F2"));
    cmdRemove->setToolTip(QStringLiteral("Del"));
    connect(cmdGo, &QPushButton::clicked, this, &frmBookmarks::Go);
    connect(cmdNote, &QPushButton::clicked, this, [this] {
        lstBookmarks->edit(lstBookmarks->currentIndex().siblingAtColumn(BookmarksModel::Note));
    });
    connect(cmdRemove, &QPushButton::clicked, this, &frmBookmarks::Remove);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    auto *row = new QHBoxLayout;
    for (QPushButton *button : {cmdGo, cmdNote, cmdRemove, cmdClose}) {
        if (button == cmdClose)
            row->addStretch();
        button->setAutoDefault(false); // Enter belongs to the list
        row->addWidget(button);
    }
    static_cast<QVBoxLayout *>(layout())->addLayout(row);
}

void frmBookmarks::Go()
{
    const QModelIndex at = lstBookmarks->currentIndex();
    if (at.isValid())
        Q_EMIT Chosen(m_bookmarks->All().at(at.row()).wall);
}

/// The next one takes its place.
void frmBookmarks::Remove()
{
    const QModelIndex at = lstBookmarks->currentIndex();
    if (!at.isValid())
        return;
    m_bookmarks->Remove(m_bookmarks->All().at(at.row()).wall);
    const int next = qMin(at.row(), m_model->rowCount() - 1);
    lstBookmarks->setCurrentIndex(m_model->index(next, BookmarksModel::Note));
}

void frmBookmarks::ShowState()
{
    const bool some = lstBookmarks->currentIndex().isValid();
    for (QPushButton *button : {cmdGo, cmdNote, cmdRemove})
        button->setEnabled(some);
}
