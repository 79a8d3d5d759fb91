// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "HelpFile.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QHelpContentModel>
#include <QHelpEngine>
#include <QHelpIndexModel>
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

HelpFile::HelpFile() = default;

/// The toolkit corrupts its memory if an engine goes while its threads still gather contents and
/// index.
HelpFile::~HelpFile()
{
    if (!m_engine)
        return;
    const QDeadlineTimer deadline(MostTimeToGather);
    while ((m_engine->contentModel()->isCreatingContents() ||
            m_engine->indexModel()->isCreatingIndex()) &&
           !deadline.hasExpired())
        QThread::usleep(MicrosecondsBetweenLooks);
}

Result HelpFile::Open(const QString &path)
{
    m_path = QFileInfo(path).absoluteFilePath(); // others give empty pages
    if (Result readable = CheckReadable(m_path); readable.Failed())
        return readable;
    if (Result registered = Register(); registered.Failed())
        return registered;
    if (Result whole = Check(); whole.Failed())
        return whole;
    m_engine->contentModel()->createContents(QString());
    m_engine->indexModel()->createIndex(QString());
    return {};
}

Result HelpFile::Register()
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

Result HelpFile::Check() const
{
    if (Result readable = CheckReadable(m_path); readable.Failed())
        return readable;
    // A file that has lost some of its bytes is registered all the same.
    const QList<QUrl> pages =
        m_engine->files(QHelpEngineCore::namespaceName(m_path), QString(), QStringLiteral("html"));
    const bool whole = std::all_of(pages.begin(), pages.end(),
                                   [this](const QUrl &page) { return !Read(page).isEmpty(); });
    return whole && !pages.isEmpty() ? Result() : Failure{QStringLiteral("The file is damaged.")};
}

QUrl HelpFile::Page(const QString &name) const
{
    const QUrl page(m_pages + name);
    return Read(page).isEmpty() ? QUrl(m_pages + FirstPage) : page;
}

QByteArray HelpFile::Read(const QUrl &url) const
{
    return m_engine->fileData(url.adjusted(QUrl::RemoveFragment));
}

QList<QHelpLink> HelpFile::PagesAbout(const QString &keyword) const
{
    return m_engine->documentsForKeyword(keyword);
}
