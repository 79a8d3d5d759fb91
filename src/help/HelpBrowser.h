// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QTextBrowser>

class HelpFile;

/// Shows pages of a help file, and for a keyword that several pages treat the choice of them. It
/// follows no link itself and loads nothing from anywhere else.
class HelpBrowser final : public QTextBrowser
{
    Q_OBJECT

  public:
    /// The file lives longer than the browser.
    explicit HelpBrowser(const HelpFile &file, QWidget *parent = nullptr);

    /// Whether this is an address that the browser can show.
    static bool Shows(const QUrl &url);

    void Show(const QUrl &url);
    void ShowPagesAbout(const QString &keyword);

  protected:
    QVariant loadResource(int type, const QUrl &name) override;

  private:
    QString ChoiceOf(const QString &keyword) const;

    const HelpFile &m_file;
};
