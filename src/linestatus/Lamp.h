// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QLabel>

#include <optional>

/// Shows whether a line is on: by a filled circle or an empty one, in words, and to assistive
/// programs. A line that is not available has a dash.
class Lamp final : public QLabel
{
    Q_OBJECT

  public:
    /// The name stands beside the lamp, "CTS on".
    explicit Lamp(const QString &name, QWidget *parent = nullptr);

    void Show(std::optional<bool> on);

  protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

  private:
    QString TextFor(std::optional<bool> on) const;
    QRectF Circle() const;
    void KeepPlace();

    QString m_name;
    std::optional<bool> m_on;
};
