// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtHelpFile.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QHelpContentWidget>
#include <QHelpEngine>
#include <QHelpIndexWidget>
#include <QHelpLink>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>
#include <chrono>

namespace
{

const QString FirstPage = QStringLiteral("index.html");

/// It takes some milliseconds, unless the disk hangs.
constexpr std::chrono::seconds MostTimeToGather{2};
constexpr unsigned long MicrosecondsBetweenLooks = 500;

/// Whether anything can be read from the file.
Result CheckReadable(const QString &path)
{
    const QFileInfo file(path);
    if (file.exists() && !file.isFile())
        return Failure{QStringLiteral("It is not a regular file.")};
    QFile readable(path);
    return readable.open(QIODevice::ReadOnly) ? Result() : Failure{readable.errorString() + u'.'};
}

} // namespace

QtHelpFile::QtHelpFile() = default;

/// The toolkit corrupts its memory if an engine goes while its threads still gather contents and
/// index.
QtHelpFile::~QtHelpFile()
{
    if (!m_engine)
        return;
    const QDeadlineTimer deadline(MostTimeToGather);
    while ((m_engine->contentModel()->isCreatingContents() ||
            m_engine->indexModel()->isCreatingIndex()) &&
           !deadline.hasExpired())
        QThread::usleep(MicrosecondsBetweenLooks);
}

Result QtHelpFile::Open(const QString &path)
{
    m_path = QFileInfo(path).absoluteFilePath(); // others give empty pages
    if (Result readable = CheckReadable(m_path); readable.Failed())
        return readable;
    if (Result registered = Register(); registered.Failed())
        return registered;
    if (Result whole = Check(); whole.Failed())
        return whole;
    Connect();
    m_engine->contentModel()->createContents(QString());
    m_engine->indexModel()->createIndex(QString());
    return {};
}

Result QtHelpFile::Register()
{
    m_folder = std::make_unique<QTemporaryDir>();
    if (!m_folder->isValid())
        return Failure{m_folder->errorString() + u'.'};
    m_engine = std::make_unique<QHelpEngine>(m_folder->filePath(QStringLiteral("help.qhc")));
    m_engine->setReadOnly(false);
    m_engine->setUsesFilterEngine(true);
    if (!m_engine->setupData() || !m_engine->registerDocumentation(m_path))
        return Failure{m_engine->error()};
    m_pages = QStringLiteral("qthelp://%1/doc/").arg(QHelpEngineCore::namespaceName(m_path));
    return {};
}

Result QtHelpFile::Check() const
{
    if (Result readable = CheckReadable(m_path); readable.Failed())
        return readable;
    // A file that has lost some of its bytes is registered all the same.
    const QList<QUrl> pages = Pages();
    const bool whole = std::all_of(pages.begin(), pages.end(),
                                   [this](const QUrl &page) { return !Read(page).isEmpty(); });
    return whole && !pages.isEmpty() ? Result() : Failure{QStringLiteral("The file is damaged.")};
}

QList<QUrl> QtHelpFile::Pages() const
{
    return m_engine->files(QHelpEngineCore::namespaceName(m_path), QString(),
                           QStringLiteral("html"));
}

QUrl QtHelpFile::Page(const QString &name) const
{
    const QUrl page(m_pages + name);
    return Read(page).isEmpty() ? QUrl(m_pages + FirstPage) : page;
}

QByteArray QtHelpFile::Read(const QUrl &url) const
{
    return m_engine->fileData(url.adjusted(QUrl::RemoveFragment));
}

QList<HelpFile::Link> QtHelpFile::PagesAbout(const QString &keyword) const
{
    QList<Link> pages;
    for (const QHelpLink &page : m_engine->documentsForKeyword(keyword))
        pages.append({page.url, page.title});
    return pages;
}

void QtHelpFile::Connect()
{
    const QHelpIndexWidget *index = m_engine->indexWidget();
    QObject *engine = m_engine.get();
    QObject::connect(m_engine->contentModel(), &QHelpContentModel::contentsCreated, engine,
                     [this] { ContentsFilled(); });
    QObject::connect(m_engine->contentWidget(), &QHelpContentWidget::linkActivated, engine,
                     [this](const QUrl &page) { PageChosen(page); });
    QObject::connect(m_engine->indexModel(), &QHelpIndexModel::indexCreated, engine,
                     [this] { IndexFilled(); });
    QObject::connect(index, &QHelpIndexWidget::documentActivated, engine,
                     [this](const QHelpLink &, const QString &keyword) { KeywordChosen(keyword); });
    QObject::connect(
        index, &QHelpIndexWidget::documentsActivated, engine,
        [this](const QList<QHelpLink> &, const QString &keyword) { KeywordChosen(keyword); });
}

QTreeView &QtHelpFile::Contents()
{
    return *m_engine->contentWidget();
}

QListView &QtHelpFile::Index()
{
    return *m_engine->indexWidget();
}

QModelIndex QtHelpFile::PlaceInContents(const QUrl &page) const
{
    return m_engine->contentWidget()->indexOf(page);
}

void QtHelpFile::FilterIndex(const QString &text)
{
    m_engine->indexWidget()->filterIndices(text);
}

void QtHelpFile::ChooseKeyword()
{
    m_engine->indexWidget()->activateCurrentItem();
}

extern "C" Q_DECL_EXPORT HelpFile *SerimondeHelpFile()
{
    return new QtHelpFile;
}
