// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QByteArray>
#include <QList>
#include <QModelIndex>
#include <QString>
#include <QUrl>

#include <functional>

class QListView;
class QTreeView;

/// A help file: pages, contents and index. What implements it is no part of the program, but a
/// module that is loaded when help is first asked for: the first window would wait for the data
/// base behind it.
class HelpFile
{
  public:
    struct Link {
        QUrl url;
        QString title;
    };

    HelpFile() = default;
    virtual ~HelpFile() = default;
    Q_DISABLE_COPY_MOVE(HelpFile)

    /// Opens the file and makes sure that every page can be read. After a failure nothing else may
    /// be called.
    virtual Result Open(const QString &path) = 0;

    /// Whether the open file can still be read.
    virtual Result Check() const = 0;

    virtual QList<QUrl> Pages() const = 0;
    /// The page of that file name, such as "window.html"; the first page if there is none.
    virtual QUrl Page(const QString &name) const = 0;
    virtual QByteArray Read(const QUrl &url) const = 0;
    virtual QList<Link> PagesAbout(const QString &keyword) const = 0;

    /// Views, which fill a moment after the opening. Whoever puts them into a window goes before
    /// this object does.
    virtual QTreeView &Contents() = 0;
    virtual QListView &Index() = 0;
    virtual QModelIndex PlaceInContents(const QUrl &page) const = 0;
    virtual void FilterIndex(const QString &text) = 0;
    /// Chooses the keyword of the index that is current.
    virtual void ChooseKeyword() = 0;

    /// Called as these happen.
    std::function<void()> ContentsFilled = [] {};
    std::function<void()> IndexFilled = [] {};
    std::function<void(const QUrl &page)> PageChosen = [](const QUrl &) {}; ///< in the contents
    std::function<void(const QString &keyword)> KeywordChosen = [](const QString &) {};
};

/// What the module exports, with C's linkage: a function that makes a help file, which is the
/// caller's.
using HelpFileMaker = HelpFile *();
inline constexpr const char *HelpFileMakerName = "SerimondeHelpFile";
