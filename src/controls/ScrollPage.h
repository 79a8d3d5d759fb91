// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QScrollArea>

/// What a dialog shows above its buttons: as large as its content needs, as if it were not there,
/// but never so large that the screen has no room for the buttons. What then does not fit scrolls.
class ScrollPage final : public QScrollArea
{
    Q_OBJECT

  public:
    /// The dialog may have a further line of text; it lives as long as the page.
    explicit ScrollPage(QWidget *content, const QWidget *line = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent *event) override;

  private:
    QSize Bounded(QSize wanted) const;

    const QWidget *m_line;
};
