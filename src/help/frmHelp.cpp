// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmHelp.h"

#include "DialogPage.h"
#include "HelpBrowser.h"
#include "HelpFile.h"
#include "Icons.h"
#include "ReadingOrder.h"
#include "Shell.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QTabWidget>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>
#include <QWindow>

namespace
{

constexpr QSize UsualSize(980, 640);
constexpr int PanesWidth = 260;
constexpr int ContentsPane = 0;
constexpr int IndexPane = 1;

constexpr auto LaterOnce = Qt::ConnectionType(Qt::QueuedConnection | Qt::UniqueConnection);

/// What a link may lead to outside the help.
const QStringList OutsideSchemes = {QStringLiteral("http"), QStringLiteral("https"),
                                    QStringLiteral("mailto")};

} // namespace

frmHelp::frmHelp(HelpFile &file, Shell &shell, UserPrompts &prompts)
    : m_file(file),
      m_shell(shell),
      m_prompts(prompts),
      txtPage(new HelpBrowser(file, this)),
      tbsPanes(new QTabWidget(this)),
      m_contents(&file.Contents()),
      m_index(&file.Index()),
      txtKeyword(new QLineEdit)
{
    setObjectName(QStringLiteral("frmHelp"));
    setWindowTitle(QStringLiteral("Serimonde Help"));
    setWindowIcon(Icons::Named("serimonde"));
    resize(UsualSize.boundedTo(screen()->availableSize()));
    MakeBrowser();
    MakePanes();
    Arrange();
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
}

/// The list without a page around it would be read while it is hidden, too.
QWidget *frmHelp::MakeContentsPane()
{
    m_contents->setObjectName(QStringLiteral("lstContents"));
    m_contents->setAccessibleName(QStringLiteral("Contents"));
    m_file.PageChosen = [this](const QUrl &page) { Follow(page); };
    m_file.ContentsFilled = [this] {
        m_contents->expandToDepth(0);
        SelectInContents(txtPage->source());
    };

    auto *pane = new DialogPage;
    auto *column = new QVBoxLayout(pane);
    column->setContentsMargins({});
    column->addWidget(m_contents);
    return pane;
}

void frmHelp::MakePanes()
{
    tbsPanes->setObjectName(QStringLiteral("tbsPanes"));
    tbsPanes->addTab(MakeContentsPane(), QStringLiteral("&Contents"));
    tbsPanes->addTab(MakeIndexPane(), QStringLiteral("&Index"));
    tbsPanes->tabBar()->lower(); // read before its panes
    connect(tbsPanes, &QTabWidget::tabBarClicked, this, [this](int pane) {
        if (pane == IndexPane)
            ShowIndex();
    });
}

void frmHelp::Arrange()
{
    auto *splitter = new QSplitter;
    splitter->addWidget(tbsPanes);
    splitter->addWidget(txtPage);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({PanesWidth, UsualSize.width() - PanesWidth});
    splitter->setChildrenCollapsible(false);
    ReadInOrder({tbsPanes, splitter->handle(1), txtPage});
    auto *page = new QVBoxLayout(this);
    page->setContentsMargins({});
    page->setSpacing(0);
    page->addWidget(MakeToolbar());
    page->addWidget(splitter, 1);
}

void frmHelp::MakeBrowser()
{
    txtPage->setObjectName(QStringLiteral("txtPage"));
    txtPage->setAccessibleName(QStringLiteral("Help page"));
    txtPage->setFrameShape(QFrame::NoFrame);
    connect(txtPage, &QTextBrowser::anchorClicked, this, &frmHelp::Follow);
    connect(txtPage, &QTextBrowser::sourceChanged, this, &frmHelp::SelectInContents);
}

QToolBar *frmHelp::MakeToolbar()
{
    auto *bar = new QToolBar;
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto add = [&](const char *name, const QString &text, const QIcon &icon,
                         const QKeySequence &key) {
        QAction *action = bar->addAction(icon, text);
        action->setObjectName(QString::fromLatin1(name));
        action->setShortcut(key);
        action->setToolTip(
            QStringLiteral("%1 (%2)").arg(text, key.toString(QKeySequence::NativeText)));
        return action;
    };
    const auto icon = [this](QStyle::StandardPixmap which) { return style()->standardIcon(which); };
    QAction *back =
        add("cmdBack", QStringLiteral("Back"), icon(QStyle::SP_ArrowBack), Qt::ALT | Qt::Key_Left);
    QAction *forward = add("cmdForward", QStringLiteral("Forward"), icon(QStyle::SP_ArrowForward),
                           Qt::ALT | Qt::Key_Right);
    bar->addSeparator();
    QAction *larger = add("cmdLarger", QStringLiteral("Larger"), {}, Qt::CTRL | Qt::Key_Plus);
    QAction *smaller = add("cmdSmaller", QStringLiteral("Smaller"), {}, Qt::CTRL | Qt::Key_Minus);
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(txtPage, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(txtPage, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    connect(back, &QAction::triggered, txtPage, &QTextBrowser::backward);
    connect(forward, &QAction::triggered, txtPage, &QTextBrowser::forward);
    connect(larger, &QAction::triggered, txtPage, [this] { txtPage->zoomIn(); });
    connect(smaller, &QAction::triggered, txtPage, [this] { txtPage->zoomOut(); });
    return bar;
}

QWidget *frmHelp::MakeIndexPane()
{
    txtKeyword->setObjectName(QStringLiteral("txtKeyword"));
    txtKeyword->setClearButtonEnabled(true);
    txtKeyword->installEventFilter(this);
    m_index->setObjectName(QStringLiteral("lstIndex"));
    m_index->setAccessibleName(QStringLiteral("Index"));
    auto *label = new QLabel(QStringLiteral("&Look for:"));
    label->setBuddy(txtKeyword);

    auto *pane = new DialogPage;
    auto *column = new QVBoxLayout(pane);
    column->addWidget(label);
    column->addWidget(txtKeyword);
    column->addWidget(m_index, 1);

    connect(txtKeyword, &QLineEdit::textChanged, this, &frmHelp::FilterIndex);
    connect(txtKeyword, &QLineEdit::returnPressed, this, [this] { m_file.ChooseKeyword(); });
    m_file.IndexFilled = [this] { FilterIndex(); };
    m_file.KeywordChosen = [this](const QString &keyword) { txtPage->ShowPagesAbout(keyword); };
    return pane;
}

bool frmHelp::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == txtKeyword && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
            key == Qt::Key_PageDown)
            return QCoreApplication::sendEvent(m_index, event);
    }
    if (watched == windowHandle() && event->type() == QEvent::WindowBlocked) {
        // The dialog is not yet, or not any more, among the modal ones while this is told.
        QMetaObject::invokeMethod(this, &frmHelp::JoinModalDialog, Qt::QueuedConnection);
    }
    return QWidget::eventFilter(watched, event);
}

void frmHelp::ShowContents()
{
    tbsPanes->setCurrentIndex(ContentsPane);
    ShowPage(QString());
    m_contents->setFocus();
}

void frmHelp::ShowIndex()
{
    tbsPanes->setCurrentIndex(IndexPane);
    if (txtPage->source().isEmpty())
        ShowPage(QString());
    txtKeyword->setFocus();
    txtKeyword->selectAll();
}

void frmHelp::ShowSearch()
{
    txtKeyword->clear();
    ShowIndex();
}

void frmHelp::ShowPage(const QString &name)
{
    txtPage->Show(m_file.Page(name));
    txtPage->setFocus();
}

/// The modal dialog that stands, if there is one. A message over the help belongs to the help,
/// which then keeps its owner.
QWindow *frmHelp::OwnerNow() const
{
    const QWidget *dialog = QApplication::activeModalWidget();
    QWindow *window = dialog ? dialog->windowHandle() : nullptr;
    const bool isOver = window && windowHandle()->isAncestorOf(window);
    return isOver ? windowHandle()->transientParent() : window;
}

void frmHelp::JoinModalDialog()
{
    QWindow *owner = OwnerNow();
    windowHandle()->setTransientParent(owner);
    if (owner)
        connect(owner, &QWindow::visibleChanged, this, &frmHelp::JoinModalDialog, LaterOnce);
}

void frmHelp::BringUp()
{
    create();
    windowHandle()->installEventFilter(this);
    if (windowHandle()->transientParent() != OwnerNow()) {
        hide(); // the desktop puts it above its owner when it appears
        JoinModalDialog();
    }
    // Where a window goes whose owner is closed, each desktop decides in its own way.
    if (const QWindow *owner = windowHandle()->transientParent())
        connect(owner, &QWindow::visibleChanged, this, &frmHelp::raise, LaterOnce);
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void frmHelp::Follow(const QUrl &link)
{
    if (HelpBrowser::Shows(link)) {
        txtPage->Show(link);
        return;
    }
    if (!OutsideSchemes.contains(link.scheme()))
        return;
    FollowLink(m_shell, m_prompts, link.toString());
}

void frmHelp::FilterIndex()
{
    m_file.FilterIndex(txtKeyword->text());
}

void frmHelp::SelectInContents(const QUrl &shown)
{
    const QModelIndex place = m_file.PlaceInContents(shown);
    if (place.isValid())
        m_contents->setCurrentIndex(place);
}
