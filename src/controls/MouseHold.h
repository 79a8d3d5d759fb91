// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

class QWidget;

/// The left mouse button while it is held down on a widget. A hold ends when the button is let go,
/// and it is lost when that will not be told to the widget: a box blocks the window or a menu
/// opens, the window or the widget goes away, the button comes up elsewhere.
class MouseHold final : public QObject
{
    Q_OBJECT

  public:
    /// The widget is the one that gets the mouse events; it must outlive the hold.
    explicit MouseHold(QWidget &widget) : m_widget(widget) {}

    bool Holds() const { return m_holds; }
    void Begin();
    /// Tells whether the button was held until now.
    bool End();

  Q_SIGNALS:
    void Lost();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    bool Loses(const QObject &watched, const QEvent &event) const;

    QWidget &m_widget;
    bool m_holds = false;
};
