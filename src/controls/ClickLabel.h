// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

/// A label that can be clicked, by mouse or, once it takes the focus, by Enter and Space. It may
/// be narrower than its text, which is then shown cut with an ellipsis; a picture stays whole.
class ClickLabel final : public QLabel
{
    Q_OBJECT

  public:
    explicit ClickLabel(const QString &text = {}, QWidget *parent = nullptr);

    /// Shows it as a link that the Tab key reaches.
    void MakeLink();

    /// Whether anybody listens to its clicks.
    bool Acts() const;

    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void Clicked();

  protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};
