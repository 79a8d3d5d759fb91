// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ColourBox.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

/// The hands on an open options dialog. Controls are known by their names; a control's value is
/// its text, its tick or its colour; a list's is the text that is chosen.
struct OptionsDesk {
    QWidget &form;

    template <typename Widget = QWidget> Widget *Find(const QString &name) const
    {
        auto *widget = form.findChild<Widget *>(name);
        if (!widget)
            qFatal("no control %s", qPrintable(name));
        return widget;
    }

    void Press(const char *button) const { Find<QAbstractButton>(button)->click(); }
    void ShowPage(int index) const { Find<QTabBar>("tbsOptions")->setCurrentIndex(index); }

    void Type(const char *box, const QString &text) const
    {
        Find<QLineEdit>(box)->setFocus();
        Find<QLineEdit>(box)->clear();
        QTest::keyClicks(Find<QLineEdit>(box), text);
    }

    /// A colour box only opens its chooser.
    void Set(const char *name, const QVariant &value) const
    {
        auto *widget = Find(name);
        for (int page = 0; page < 4; ++page) {
            if (Find(QStringLiteral("picOptions_%1").arg(page))->isAncestorOf(widget))
                ShowPage(page);
        }
        if (!widget->isVisible())
            qFatal("hidden: %s", name);
        if (qobject_cast<QLineEdit *>(widget))
            Type(name, value.toString());
        else if (auto *list = qobject_cast<QComboBox *>(widget))
            list->setCurrentText(value.toString());
        else if (auto *button = qobject_cast<QAbstractButton *>(widget))
            button->click();
    }

    QVariant Value(const char *name) const
    {
        auto *widget = Find(name);
        if (const auto *edit = qobject_cast<QLineEdit *>(widget))
            return edit->text();
        if (const auto *list = qobject_cast<QComboBox *>(widget))
            return list->currentText();
        if (const auto *colour = qobject_cast<ColourBox *>(widget))
            return colour->Colour();
        return qobject_cast<QAbstractButton *>(widget)->isChecked();
    }
};
