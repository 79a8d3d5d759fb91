// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"

#include <QHelpLink>
#include <QList>
#include <QString>
#include <QUrl>

#include <memory>

class QHelpEngine;
class QTemporaryDir;

/// An opened help file: pages, contents and index. What the reader of such files keeps for itself
/// lies in a temporary folder that goes with this object.
class HelpFile
{
  public:
    HelpFile();
    ~HelpFile();

    /// Opens the file and makes sure that every page can be read. After a failure nothing else may
    /// be called.
    Result Open(const QString &path);

    /// Whether the open file can still be read.
    Result Check() const;

    /// The page of that file name, such as "window.html"; the first page if there is none.
    QUrl Page(const QString &name) const;
    QByteArray Read(const QUrl &url) const;
    QList<QHelpLink> PagesAbout(const QString &keyword) const;

    /// Models and views of contents and index; they fill a moment after the opening.
    QHelpEngine &Engine() { return *m_engine; }

  private:
    Result Register();

    QString m_path;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QHelpEngine> m_engine;
    QString m_pages; ///< address of the folder of the pages
};
