// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

class HelpBrowser;
class HelpFile;
class QLineEdit;
class QListView;
class QTabWidget;
class QToolBar;
class QTreeView;
class QWindow;
class Shell;
class UserPrompts;

/// The help window: contents and index beside the page. It is no dialog; it stays open while the
/// program is used.
class frmHelp final : public QWidget
{
    Q_OBJECT

  public:
    /// All three live longer than the window; the file is open.
    frmHelp(HelpFile &file, Shell &shell, UserPrompts &prompts);

    void ShowContents();
    /// The index, with the caret in its search field.
    void ShowIndex();
    /// The whole index, whatever was looked for before.
    void ShowSearch();
    /// The page of that file name; the first page if there is none.
    void ShowPage(const QString &name);

    /// Brings the window to the front. While a modal dialog stands only the windows that belong to
    /// it can be used, so the help window always belongs to the latest one.
    void BringUp();

  protected:
    /// Hands the keys that move in the index from the search field to the index, and notices when
    /// another modal dialog has blocked the window.
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void MakeBrowser();
    void MakePanes();
    QWidget *MakeContentsPane();
    QWidget *MakeIndexPane();
    QToolBar *MakeToolbar();
    void Arrange();

    QWindow *OwnerNow() const;
    void JoinModalDialog();
    void Follow(const QUrl &link);
    void FilterIndex();
    void SelectInContents(const QUrl &shown);

    HelpFile &m_file;
    Shell &m_shell;
    UserPrompts &m_prompts;
    HelpBrowser *txtPage;
    QTabWidget *tbsPanes;
    QTreeView *m_contents;
    QListView *m_index;
    QLineEdit *txtKeyword;
};
