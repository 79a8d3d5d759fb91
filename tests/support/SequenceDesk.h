// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SQEditSequence.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>

/// The edit modes of the control.
enum Mode { Ascii, Decimal, Hex, Binary };

/// A shown window with the control between two other fields, and the verbs of a user.
struct SequenceDesk {
    QWidget window;
    QLineEdit before{&window};
    SQEditSequence editor{&window};
    QLineEdit behind{&window};

    explicit SequenceDesk(Mode mode = Hex, const QByteArray &sequence = {})
    {
        QToolTip::hideText();
        auto *page = new QVBoxLayout(&window);
        for (QWidget *field : std::initializer_list<QWidget *>{&before, &editor, &behind})
            page->addWidget(field);
        editor.SetEditMode(mode);
        editor.SetSequence(sequence);
        window.resize(520, 260);
        window.show();
        window.activateWindow();
        editor.setFocus();
        if (!QTest::qWaitForWindowActive(&window))
            qFatal("the window was not shown");
    }

    /// Characters, and keys as in menus in angle brackets.
    void Type(const QString &keys)
    {
        for (qsizetype at = 0; at < keys.size(); ++at) {
            if (keys[at] != u'<') {
                QTest::sendKeyEvent(QTest::Click, &editor, Qt::Key_unknown, keys[at], {});
                continue;
            }
            const qsizetype end = keys.indexOf(u'>', at);
            const QKeySequence keySequence(keys.mid(at + 1, end - at - 1),
                                           QKeySequence::PortableText);
            const QKeyCombination key = keySequence[0];
            QTest::keyClick(&editor, key.key(), key.keyboardModifiers());
            at = end;
        }
    }
    void PasteText(const QString &text)
    {
        QApplication::clipboard()->setText(text);
        Type("<Ctrl+V>");
    }
    QByteArray Bytes() const { return editor.Sequence().toHex(' ').toUpper(); }
    QString Line() const { return editor.findChild<QLabel *>("lblPosition")->text(); }
    static QString Tip() { return QToolTip::isVisible() ? QToolTip::text() : QString(); }
    QPoint Point(qsizetype byte, qreal share = 0.2) const
    {
        const QRectF rect = editor.ItemRect(byte);
        return QPointF(rect.left() + rect.width() * share, rect.center().y()).toPoint();
    }
    QByteArray Selected() const { return editor.Editing().SelectedBytes(); }
};
