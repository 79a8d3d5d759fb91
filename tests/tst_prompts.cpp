// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtPrompts.h"

#include <QApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTextStream>
#include <QTimer>

class tst_prompts : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AFileDialogTakesNamesThatCanBeMeant()
    {
        const QTemporaryDir folder;
        QStringList names = {"none/a.sqx", "caf\uFFFD", "rev2.1"};
        QStringList told;
        QTimer hand;
        connect(&hand, &QTimer::timeout, this, [&] {
            QWidget *form = QApplication::activeModalWidget();
            if (auto *box = qobject_cast<QMessageBox *>(form)) {
                told << box->text();
                box->accept();
            } else if (auto *dialog = qobject_cast<QFileDialog *>(form); dialog && names.size()) {
                dialog->findChild<QLineEdit *>("fileNameEdit")->setText(names.takeFirst());
                QTest::keyClick(dialog, Qt::Key_Return);
            }
        });
        hand.start(1);
        QString lines;
        QTextStream errors(&lines);
        QtPrompts prompts(errors);
        QCOMPARE(prompts.ChooseFile({.purpose = FileDialogRequest::Purpose::Save,
                                     .dialog = "dialog",
                                     .title = "title",
                                     .filter = "Projects (*.sqx)|*.sqx",
                                     .folder = folder.path()}),
                 folder.filePath("rev2.1"));
        QCOMPARE(told.size(), 2);
        QVERIFY(told[0].contains(folder.filePath("none")));
        QVERIFY2(told[1].contains("caf\\xEF\\xBF\\xBD.sqx"), qPrintable(told[1]));
    }

    /// A name can look like a tag, turn a terminal upside down, or claim to be another line.
    void TextsOfStrangersArePlain()
    {
        const MessagePrompt prompt = {.text = "<b>a</b>\x1B[2J\nb&c",
                                      .caption = "\x07",
                                      .details = "<i>d</i>\r",
                                      .note = "<u>e</u>\x9B"};
        QString lines;
        QTextStream errors(&lines);
        QtPrompts prompts(errors);
        QStringList seen;
        QTimer::singleShot(0, this, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            seen << box->windowTitle() << box->detailedText();
            for (const QLabel *label : box->findChildren<QLabel *>()) {
                if (!label->text().isEmpty() && label->textFormat() == Qt::PlainText)
                    seen << label->text();
            }
            box->accept();
        });
        prompts.ShowMessage(prompt);
        QCOMPARE(seen, QStringList({"\u2407", "<i>d</i>\u240D", "<b>a</b>\u241B[2J\nb&c",
                                    "<u>e</u>\uFFFD"}));
        prompts.EndUnasked();
        prompts.ShowMessage(prompt);
        QCOMPARE(lines, "information: <b>a</b>\u241B[2J b&c (<u>e</u>\uFFFD) (<i>d</i> )\n");
    }
};

QTEST_MAIN(tst_prompts)
#include "tst_prompts.moc"
