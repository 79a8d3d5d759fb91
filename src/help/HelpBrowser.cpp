// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "HelpBrowser.h"

#include "HelpFile.h"

namespace
{

constexpr QLatin1String PageScheme("qthelp");
constexpr QLatin1String KeywordScheme("keyword");
constexpr int Margin = 12;

} // namespace

HelpBrowser::HelpBrowser(const HelpFile &file, QWidget *parent) : QTextBrowser(parent), m_file(file)
{
    setOpenLinks(false);
    document()->setDocumentMargin(Margin);
}

bool HelpBrowser::Shows(const QUrl &url)
{
    return url.scheme() == PageScheme || url.scheme() == KeywordScheme;
}

void HelpBrowser::Show(const QUrl &url)
{
    setSource(url, QTextDocument::HtmlResource);
}

void HelpBrowser::ShowPagesAbout(const QString &keyword)
{
    const QList<HelpFile::Link> pages = m_file.PagesAbout(keyword);
    if (pages.size() == 1) {
        Show(pages.first().url);
        return;
    }
    QUrl choice;
    choice.setScheme(KeywordScheme);
    choice.setPath(keyword);
    Show(choice);
}

QVariant HelpBrowser::loadResource(int, const QUrl &name)
{
    const QUrl url = source().resolved(name);
    if (url.scheme() == KeywordScheme)
        return ChoiceOf(url.path());
    return url.scheme() == PageScheme ? m_file.Read(url) : QByteArray();
}

QString HelpBrowser::ChoiceOf(const QString &keyword) const
{
    QString html = QStringLiteral("<h2>%1</h2><ul>").arg(keyword.toHtmlEscaped());
    for (const HelpFile::Link &page : m_file.PagesAbout(keyword)) {
        html += QStringLiteral("<li><a href=\"%1\">%2</a></li>")
                    .arg(page.url.toString(QUrl::FullyEncoded).toHtmlEscaped(),
                         page.title.toHtmlEscaped());
    }
    return html + QStringLiteral("</ul>");
}
