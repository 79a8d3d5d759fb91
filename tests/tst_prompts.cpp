// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtPrompts.h"

#include <QApplication>
#include <QFileDialog>
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
};

QTEST_MAIN(tst_prompts)
#include "tst_prompts.moc"
