// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "HelpFile.h"

#include <memory>

class QHelpEngine;
class QTemporaryDir;

/// The help file that the module makes. What the toolkit's reader of such files keeps for itself
/// lies in a temporary folder that goes with this object.
class QtHelpFile final : public HelpFile
{
  public:
    QtHelpFile();
    ~QtHelpFile() override;

    Result Open(const QString &path) override;
    Result Check() const override;
    QList<QUrl> Pages() const override;
    QUrl Page(const QString &name) const override;
    QByteArray Read(const QUrl &url) const override;
    QList<Link> PagesAbout(const QString &keyword) const override;
    QTreeView &Contents() override;
    QListView &Index() override;
    QModelIndex PlaceInContents(const QUrl &page) const override;
    void FilterIndex(const QString &text) override;
    void ChooseKeyword() override;

  private:
    Result Register();
    void Connect();

    QString m_path;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QHelpEngine> m_engine;
    QString m_pages; ///< address of the folder of the pages
};
