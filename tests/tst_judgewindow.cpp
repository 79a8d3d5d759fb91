// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureEncoder.h"
#include "CaptureJudging.h"
#include "MdSequenceEdition.h"
#include "OpenFiles.h"
#include "ProjectState.h"
#include "SystemFiles.h"
#include "frmJudgement.h"
#include "support/ScriptedPrompts.h"

#include <QClipboard>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

namespace
{

/// The command, a capture with one near miss among many hits, and a window to lie over.
struct Desk {
    Desk()
    {
        sequences.AddReceive({.Name = "Ack", .Sequence = "ACK\r"});
        sequences.AddReceive({.Name = "Alarm", .Sequence = "ALARM\r"});
        CaptureEncoder encoder({{"COM7", {}, 9600}}, "Serimonde");
        QByteArray capture = encoder.Head();
        for (int i = 0; i < 30; ++i) {
            TrafficEvent event;
            event.time.wall = 1'700'000'000'000'000'000 + i;
            event.bytes = i == 20 ? "ALERM\r" : "ACK\r";
            encoder.Append(capture, event);
        }
        Write(path, capture);
        owner.show();
    }
    static void Write(const QString &name, const QByteArray &bytes)
    {
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    frmJudgement *Window() const { return owner.findChild<frmJudgement *>(); }
    QTreeView *List(const char *name) const { return Window()->findChild<QTreeView *>(name); }
    static QString Text(const QTreeView *list, int row, int column)
    {
        return list->model()->index(row, column).data().toString();
    }
    void Click(const char *button) const
    {
        QTest::mouseClick(Window()->findChild<QPushButton *>(button), Qt::LeftButton);
    }

    QTemporaryDir folder;
    QString path = folder.filePath("a.pcapng");
    QString report = folder.filePath("report.txt");
    SystemFiles system;
    OpenFiles files{system};
    ScriptedPrompts prompts;
    ProjectState project;
    MdSequenceEdition sequences;
    QString remembered;
    CaptureJudging judging{{sequences, project, remembered, files, prompts}};
    QWidget owner;
};

} // namespace

class tst_judgewindow : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void ANearMissLeadsToItsTelegrams()
    {
        Desk desk;
        desk.prompts.chosen = {desk.path};
        desk.judging.Judge(desk.owner);
        QVERIFY(desk.Window());
        QTreeView *sequences = desk.List("lstSequences");
        QCOMPARE(desk.Text(sequences, 0, 1) + desk.Text(sequences, 1, 1), "29never");
        QVERIFY(sequences->model()->index(1, 0).data(Qt::BackgroundRole).isValid());
        QVERIFY(!sequences->model()->index(0, 0).data(Qt::BackgroundRole).isValid());

        QTreeView *places = desk.List("lstPlaces");
        QCOMPARE(places->currentIndex().row(), 20);
        QCOMPARE(desk.Text(places, 20, 6), "41 4C [45] 52 4D 0D");
        const QTreeView *telegrams = desk.List("lstTelegrams");
        QTRY_COMPARE(desk.Text(telegrams, telegrams->currentIndex().row(), 6), "[ALERM<CR>]");
        const auto *caption = telegrams->parentWidget()->findChild<QLabel *>();
        QVERIFY(caption->text().endsWith("expected 41 4C 41 52 4D 0D, found 41 4C [45] 52 4D 0D"));

        // Quickly on to others: the last one counts.
        for (const int row : {3, 28, 5})
            places->setCurrentIndex(places->model()->index(row, 0));
        QTRY_COMPARE(desk.Text(telegrams, telegrams->currentIndex().row(), 1), "6");
        places->setFocus();
        QTest::keySequence(places, QKeySequence::Copy);
        QVERIFY(QGuiApplication::clipboard()->text().contains("\t6\t"));
        Q_EMIT sequences->activated(sequences->model()->index(1, 0));
        QTRY_COMPARE(desk.Text(telegrams, telegrams->currentIndex().row(), 1), "21");
    }

    void TheReportIsSavedAndCopied()
    {
        Desk desk;
        desk.prompts.chosen = {desk.path, desk.report, desk.report,
                               desk.folder.filePath("no/x.txt")};
        desk.judging.Judge(desk.owner);
        desk.Click("cmdCopy");
        desk.Click("cmdSave");
        QFile saved(desk.report);
        QVERIFY(saved.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(saved.readAll());
        QVERIFY2(text.contains("expected 41 4C 41 52 4D 0D; found 41 4C [45]"), qPrintable(text));
        QCOMPARE(QGuiApplication::clipboard()->text(), text);

        Desk::Write(desk.report, "old");
        desk.Click("cmdSave"); // is not replaced by itself
        QCOMPARE(QFileInfo(desk.report).size(), 3);
        desk.Click("cmdSave");
        QVERIFY(desk.prompts.shown.last().text.startsWith("The report cannot be saved. "));
    }

    void WhatIsNoCaptureIsRefused()
    {
        Desk desk;
        Desk::Write(desk.path, "text");
        desk.prompts.chosen = {desk.path, desk.folder.path(), "", desk.path};
        for (const char *cause : {"neither a pcapng nor a pcap capture", ""}) {
            desk.judging.Judge(desk.owner);
            const QString text = desk.prompts.shown.takeLast().text;
            QVERIFY2(text.startsWith("The capture cannot be judged. ") && text.contains(cause),
                     qPrintable(text));
        }
        desk.judging.Judge(desk.owner); // no file chosen
        QVERIFY(!desk.Window());
    }

    void ACancelledJudgementShowsNothing()
    {
        Desk desk;
        desk.prompts.chosen = {desk.path};
        desk.prompts.beforeWork = [&desk] { desk.prompts.atWork->Cancel(); };
        desk.judging.Judge(desk.owner);
        QVERIFY(!desk.Window() && desk.prompts.shown.isEmpty());
    }
};

QTEST_MAIN(tst_judgewindow)
#include "tst_judgewindow.moc"
