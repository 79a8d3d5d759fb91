// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QMouseEvent>
#include <QTest>

/// What can come between a press on a widget and its release.
struct MouseLoss {
    const char *name;
    void (*happen)(QWidget &held);
};

inline constexpr MouseLoss MouseLosses[] = {
    {"a box blocks the window",
     [](QWidget &held) {
         QDialog box(held.window());
         box.setModal(true);
         box.show();
     }},
    {"another window is active",
     [](QWidget &) {
         QWidget other;
         other.show();
         other.activateWindow();
         if (!QTest::qWaitForWindowActive(&other))
             qFatal("the other window was not shown");
     }},
    {"a menu opens",
     [](QWidget &held) {
         QMenu menu(&held);
         menu.addAction(QStringLiteral("entry"));
         menu.popup({});
     }},
    {"the widget is hidden",
     [](QWidget &held) {
         held.hide();
         held.show();
     }},
    {"the button comes up elsewhere",
     [](QWidget &) {
         QWidget other;
         QTest::mouseRelease(&other, Qt::LeftButton);
     }},
    {"the mouse comes back without its button",
     [](QWidget &held) {
         QMouseEvent move(QEvent::MouseMove, {5, 5}, held.mapToGlobal(QPointF(5, 5)), Qt::NoButton,
                          Qt::NoButton, {});
         QApplication::sendEvent(&held, &move);
     }},
};
