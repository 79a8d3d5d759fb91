// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "controls/SQEditSequence.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>
#include <QVBoxLayout>

#include <map>

/// The edit modes of the control.
enum Mode { Ascii, Decimal, Hex, Binary };

/// Keys that have short names here; all others are called as in menus.
inline const std::map<QString, QKeyCombination> NamedKeys = {
    {"BS", Qt::Key_Backspace},
    {"All", Qt::CTRL | Qt::Key_A},
    {"Copy", Qt::CTRL | Qt::Key_C},
    {"Cut", Qt::CTRL | Qt::Key_X},
    {"Paste", Qt::CTRL | Qt::Key_V},
    {"Undo", Qt::CTRL | Qt::Key_Z},
    {"Redo", Qt::CTRL | Qt::Key_Y},
    {"Redo2", Qt::CTRL | Qt::SHIFT | Qt::Key_Z},
    {"Enter", Qt::Key_Return},
    {"Keypad", Qt::KeypadModifier | Qt::Key_Enter},
    {"Ctrl+Enter", Qt::CTRL | Qt::Key_Return}};

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

    /// Characters, and keys by their names in angle brackets.
    void Type(const QString &keys)
    {
        for (qsizetype at = 0; at < keys.size(); ++at) {
            if (keys[at] != u'<') {
                QTest::sendKeyEvent(QTest::Click, &editor, Qt::Key_unknown, keys[at], {});
                continue;
            }
            const qsizetype end = keys.indexOf(u'>', at);
            const QString name = keys.mid(at + 1, end - at - 1);
            const auto named = NamedKeys.find(name);
            const QKeyCombination key = named != NamedKeys.end()
                                            ? named->second
                                            : QKeySequence(name, QKeySequence::PortableText)[0];
            QTest::keyClick(&editor, key.key(), key.keyboardModifiers());
            at = end;
        }
    }
    void PasteText(const QString &text)
    {
        QApplication::clipboard()->setText(text);
        Type("<Paste>");
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
