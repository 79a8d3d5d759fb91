// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtSettingsStore.h"
#include "support/Cases.h"
#include "support/ScriptedDisk.h"

#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>

#include <functional>

namespace
{

const QString Path = QStringLiteral("Serimonde.conf");

/// Texts and keys of characters that the form of the file gives a meaning to, in all their
/// neighbourhoods.
IniText::Texts TrickyTexts()
{
    const QString characters = QStringLiteral("a1fFxU \t\n\r\v\x01\x1f\x7f\x85;,=\"'\\@#%[]()/ä€")
                                   .append(QChar::Null)
                                   .append(QString::fromUcs4(U"\U0001F600"));
    IniText::Texts texts = {{"Settings/Empty", ""},    {"Plain", "1"},
                            {"General/a", "2"},        {"Sub/de/ep", ""},
                            {"Stamp/@", "@Invalid()"}, {"Ä €/%U0041", "x, y"}};
    QRandomGenerator random(20261117);
    for (int i = 0; i < 1000; ++i) {
        QString text;
        for (int length = random.bounded(7); length > 0; --length) {
            const QStringView rest =
                QStringView(characters).sliced(random.bounded(characters.size() - 1));
            if (!rest.front().isLowSurrogate())
                text += rest.first(rest.front().isHighSurrogate() ? 2 : 1);
        }
        texts[QStringLiteral("Tricky/%1").arg(i)] = text;
    }
    return texts;
}

} // namespace

class tst_settingsstore : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void WritesWhatTheToolkitWouldWrite()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath("a.conf");
        const IniText::Texts texts = TrickyTexts();
        {
            QSettings toolkit(path, QSettings::IniFormat);
            for (auto text = texts.cbegin(); text != texts.cend(); ++text)
                toolkit.setValue(text.key(), *text);
        }
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(IniText::Write(texts), file.readAll());
        QCOMPARE(IniText::Read(IniText::Write(texts)).texts, texts);
        QCOMPARE(QtSettingsStore::UserPath(),
                 QSettings(QSettings::NativeFormat, QSettings::UserScope, "Serimonde").fileName());
    }

    void KeepsWhatTheToolkitWouldSpoil()
    {
        IniText::Texts texts;
        for (const char16_t alone : {u'\xD800', u'\xDC00', u'\xFEFF'})
            texts[QString("S/%1").arg(int(alone))] = QString("a") + alone + "bc" + alone;
        QCOMPARE(IniText::Read(IniText::Write(texts)).texts, texts);
    }

    void ReadsWhatHandsHaveWritten_data()
    {
        const Cases<QByteArray, QString> row("line", "text");
        row("a decimal comma", "1,5", "1,5");
        row("a folder with a comma", " /home/a, b/", "/home/a, b/");
        row("a list with quotes", "\"a b\", c", "a b, c");
        row("with a comment", "9600 ; baud", "9600");
        row("something of the toolkit's", "@Rect(1 2 3 4)", "@Rect(1 2 3 4)");
    }
    void ReadsWhatHandsHaveWritten()
    {
        QFETCH(const QByteArray, line);
        disk.files[Path] =
            "; mine\r\n[Other]\r\nkey=x\r\n[S]\r\nkey=" + line + "\r\n[Last]\r\nkey=y";
        QtSettingsStore store(disk, Path);
        QTEST(store.Read("S", "key").value(), "text");
        store.Write("S", "new", "1");
        QVERIFY(!store.Flush().Failed()); // which keeps the text, too
        QTEST(QtSettingsStore(disk, Path).Read("S", "key").value(), "text");
    }

    void ProgramsThatEndTogetherKeepEachOthersChanges()
    {
        disk.files[Path] = "[S]\na=1\nb=1\nc=1\n";
        QtSettingsStore first(disk, Path);
        QtSettingsStore second(disk, Path);
        for (QtSettingsStore *store : {&first, &second}) {
            const QString own = store == &first ? "a" : "b";
            for (const QString key : {"a", "b", "c"}) // all are written, one is another
                store->Write("S", key, key == own ? "2" : "1");
            store->Write("S", "c", "2");
            store->Write("S", "c", "1");
        }
        QVERIFY(!first.Flush().Failed());
        QVERIFY(!second.Flush().Failed());
        QCOMPARE(disk.files[Path], "[S]\na=2\nb=2\nc=1\n");
        QCOMPARE(second.Read("S", "a").value_or("none"), "2");
        QCOMPARE(first.Read("S", "b").value_or("none"), "1");
        disk.files.remove(Path);
        QVERIFY(!second.Flush().Failed());
        QVERIFY(disk.files.isEmpty()); // nothing to say
    }

    void AFailureLeavesTheOldFileAndIsTold_data()
    {
        const Cases<std::function<void(ScriptedDisk &)>, QString> row("happens", "cause");
        row(
            "no room", [](auto &d) { d.room = 0; }, "No space left on device");
        row(
            "room for half", [](auto &d) { d.room = 10; }, "No space left on device");
        row(
            "not on the disk", [](auto &d) { d.failSync = true; }, "No space left on device");
        row(
            "too few bytes", [](auto &d) { d.vanishing = 1; }, "The file does not hold all");
        row(
            "no new name", [](auto &d) { d.failTakePlace = true; }, "No space left");
        row(
            "held", [](auto &d) { d.held = true; }, "Another program is saving it");
        row(
            "unread", [](auto &d) { d.failRead = true; }, "cannot be read. It is left as it");
        row(
            "damaged", [](auto &d) { d.files[Path] = "[S]\nold\n"; },
            "It is not a settings file. It is left");
    }
    void AFailureLeavesTheOldFileAndIsTold()
    {
        QFETCH(const std::function<void(ScriptedDisk &)>, happens);
        QFETCH(const QString, cause);
        disk.files[Path] = "[S]\nold=1\n";
        QtSettingsStore store(disk, Path);
        store.Write("S", "new", "2");
        happens(disk);
        const QByteArray before = disk.files[Path];
        const QString fault = store.Flush().Cause();
        QVERIFY2(fault.startsWith(Path + ": " + cause), qPrintable(fault));
        QCOMPARE(disk.files[Path], before);
        QCOMPARE(disk.unfinished, 0);
        QCOMPARE(store.Read("S", "new"), "2");
        disk.Reset();
        disk.files[Path] = "[S]\nold=3\n";
        QVERIFY(!store.Flush().Failed());
        QCOMPARE(disk.files[Path], "[S]\nnew=2\nold=3\n");
    }

    void WhatCannotBeReadAtFirstIsNotTakenForNothing()
    {
        disk.files[Path] = "[S]\nold=1\n";
        disk.failRead = true;
        const QtSettingsStore unread(disk, Path);
        QCOMPARE(unread.State().Cause(), Path + ": cannot be read");
        disk.Reset();
        QCOMPARE(QtSettingsStore(disk, Path).State().Cause(), QString()); // merely missing
        disk.files[Path] = "nonsense";
        QCOMPARE(QtSettingsStore(disk, Path).State().Cause(), Path + ": It is not a settings file");
    }

    void SetsTheOldFileAsideUnderAFreeName()
    {
        QVERIFY(SetSettingsAside(disk, Path).kept.isEmpty());
        for (const QString kept : {"Serimonde.conf.old", "Serimonde.conf.old2"}) {
            disk.files[Path] = kept.toUtf8();
            QCOMPARE(SetSettingsAside(disk, Path).kept, kept);
            QCOMPARE(disk.files[kept], kept.toUtf8());
            QVERIFY(!disk.files.contains(Path));
        }
        disk.files[Path] = "stays";
        disk.refused = Path;
        const SetAside refused = SetSettingsAside(disk, Path);
        QCOMPARE(refused.result.Cause(), Path + ": Read-only file system");
        QVERIFY(refused.kept.isEmpty());
    }

    void init() { disk.Reset(); }
    void cleanup() { disk.refused.clear(); }

  private:
    ScriptedDisk disk;
};

QTEST_GUILESS_MAIN(tst_settingsstore)
#include "tst_settingsstore.moc"
