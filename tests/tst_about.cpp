// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ClickLabel.h"
#include "QtShell.h"
#include "SystemInformation.h"
#include "TextRegistry.h"
#include "frmAbout.h"
#include "support/Cases.h"
#include "support/ProgramBench.h"

#include <QFile>
#include <QLabel>
#include <QPushButton>
#include <QTemporaryDir>

namespace
{

const MessagePrompt Unavailable = {"System Information Is Unavailable At This Time",
                                   PromptIcon::None, PromptButtons::Ok, PromptAnswer::Ok,
                                   "Serimonde"};
const QString ProgramValue =
    QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools\\MSINFO\\PATH");
const QString FolderValue =
    QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Shared Tools Location\\MSINFO");

RegistryValue TextValue(const QString &text)
{
    return {RegistryValue::Type::Text, text.toUtf8()};
}

/// A file that can be started if executable, with its folders.
void MakeFile(const QString &path, const QByteArray &content, bool executable)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    if (executable)
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace

class tst_about : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void TheBoxNamesVersionAndLinks();
    void TheCommandOpensTheBox();
    void ValuesAsText_data();
    void ValuesAsText();
    void TheStoreInTextFiles_data();
    void TheStoreInTextFiles();
    void SystemInformation_data();
    void SystemInformation();
    void TheDesktopStartsWhatItHas();
};

void tst_about::TheBoxNamesVersionAndLinks()
{
    RecordingShell shell;
    ScriptedPrompts prompts;
    frmAbout box({"1.2.3", "help@maker.test", "https://maker.test/"}, shell, prompts);
    bool asked = false;
    box.ShowSystemInformation = [&] { asked = true; };
    box.show();
    QCOMPARE(box.windowTitle(), QString("About Serimonde"));
    const QList<QPair<const char *, const char *>> texts = {{"lblVersion", "Version 1.2.3"},
                                                            {"labEmail", "help@maker.test"},
                                                            {"labWeb", "https://maker.test/"}};
    for (const auto &[name, text] : texts)
        QCOMPARE(box.findChild<QLabel *>(name)->text(), QString(text));

    QTest::mouseClick(box.findChild<ClickLabel *>("labEmail"), Qt::LeftButton);
    QVERIFY(prompts.shown.isEmpty());
    shell.refused << "https://maker.test/";
    QTest::keyClick(box.findChild<ClickLabel *>("labWeb"), Qt::Key_Return);
    QCOMPARE(shell.opened, QStringList({"mailto:help@maker.test", "https://maker.test/"}));
    QCOMPARE(prompts.shown,
             QList{CriticalMessage("https://maker.test/ could not be opened. Refused.")});

    QTest::mouseClick(box.findChild<QPushButton *>("cmdSysInfo"), Qt::LeftButton);
    QVERIFY(asked && box.isVisible());
    QTest::keyClick(&box, Qt::Key_Return);
    QVERIFY(!box.isVisible());
}

void tst_about::TheCommandOpensTheBox()
{
    ProgramBench bench;
    QString version;
    const auto about = [&] {
        QTimer::singleShot(0, bench.program.get(), [&] {
            QWidget *box = QApplication::activeModalWidget();
            version = box->findChild<QLabel *>("lblVersion")->text();
            QTest::mouseClick(box->findChild<QPushButton *>("cmdSysInfo"), Qt::LeftButton);
            QTest::keyClick(box, Qt::Key_Escape);
        });
        bench.program->Window()->findChild<QAction *>("mnuHelpAbout")->trigger();
    };
    bench.Run({{about, [] { return true; }}});
    QCOMPARE(version, QString("Version " SERIMONDE_VERSION));
    QCOMPARE(bench.prompts.shown, QList{Unavailable});
}

void tst_about::ValuesAsText_data()
{
    const Cases<int, QByteArray, QString> row("type", "stored", "text");
    const auto text = int(RegistryValue::Type::Text);
    const auto number = int(RegistryValue::Type::Number);
    row("a text is itself", text, "C:\\Tools\\\xC3\xBC.exe", QString::fromUtf8("C:\\Tools\\ü.exe"));
    row("a text ends at its first NUL", text, QByteArray("one\0two", 7), "one");
    row("bytes below 16 give one digit each", number, "\x04\x03\x02\x01", "4660");    // &h1234
    row("both kinds together", number, "\x10\x0F\x80\x01", "1576720");                // &h180F10
    row("all above a zero is cut off", number, QByteArray("\x02\0\x07\x01", 4), "2"); // &h2
    row("nothing is left of zero", number, QByteArray(4, '\0'), "0");
    row("eight digits are not negative", number, "\xFF\xFF\xFF\xFF", "4294967295");
    row("another type has no text", int(RegistryValue::Type::Other), "\x01\x02", "");
}

void tst_about::ValuesAsText()
{
    QFETCH(int, type);
    QFETCH(QByteArray, stored);
    QFETCH(QString, text);
    MemoryRegistry registry;
    registry.values["ROOT\\A\\B\\name"] = {RegistryValue::Type(type), stored};
    QCOMPARE(GetKeyValue(registry, "ROOT", "A\\B", "name"), (KeyValue{true, text}));
    QCOMPARE(GetKeyValue(registry, "ROOT", "A\\B", "other"), (KeyValue{false, ""}));
}

void tst_about::TheStoreInTextFiles_data()
{
    const Cases<QByteArray, bool, QString> row("file", "found", "text");
    row("a text", "[ROOT\\A\\B]\nname = REG_SZ /opt/a b = c \n", true, "/opt/a b = c");
    row("names in any case, among others",
        "# mine\r\n[Root\\a]\r\nname=REG_SZ no\r\n[root\\a\\b]\r\nx=REG_SZ no\r\nNAME=REG_SZ yes",
        true, "yes");
    row("a decimal number", "[ROOT\\A\\B]\nname=REG_DWORD 16909060\n", true, "4660");
    row("a hexadecimal number", "[ROOT\\A\\B]\nname=REG_DWORD 0x01020304", true, "4660");
    row("an unknown type", "[ROOT\\A\\B]\nname=REG_BINARY 01 02", true, "");
    row("a number that is none", "[ROOT\\A\\B]\nname=REG_DWORD 0x1FFFFFFFF", false, "");
    row("a comment", "[ROOT\\A\\B]\n#name=REG_SZ no", false, "");
    row("no text at all", QByteArray("\0\xFF[\xC3=\n\n[ROOT\\A\\B", 15), false, "");
}

void tst_about::TheStoreInTextFiles()
{
    QFETCH(QByteArray, file);
    QFETCH(bool, found);
    QFETCH(QString, text);
    const QTemporaryDir folder;
    const QString path = folder.filePath("first");
    MakeFile(path, file, false);
    MakeFile(folder.filePath("second"), "[ROOT\\A\\B]\nname=REG_SZ second", false);
    SystemFiles files;
    TextRegistry registry(files, {folder.filePath("missing"), folder.path(), path});
    QCOMPARE(GetKeyValue(registry, "ROOT", "A\\B", "name"), (KeyValue{found, text}));
    TextRegistry both(files, {path, folder.filePath("second")});
    QCOMPARE(GetKeyValue(both, "ROOT", "A\\B", "name").value, found ? text : "second");
}

void tst_about::SystemInformation_data()
{
    const Cases<QString, QString, QString, QStringList, bool> row("program", "folder", "refused",
                                                                  "started", "message");
    const QString none;
    row("the program of the first key", "/bin/a", "HERE", "", {"/bin/a"}, false);
    row("it does not start", "/bin/a", "HERE", "/bin/a", {"/bin/a"}, true);
    row("the program in the folder of the second key", none, "HERE", "", {"HERE/MSINFO32.EXE"},
        false);
    row("which does not start", none, "HERE", "HERE/MSINFO32.EXE", {"HERE/MSINFO32.EXE"}, true);
    row("which is not there", none, "/no-such-folder", "", {}, true);
    row("neither key", none, none, "", {"/bin/own"}, false);
    row("neither key, and the best program fails", none, none, "/bin/own",
        {"/bin/own", "/bin/other --all"}, false);
}

void tst_about::SystemInformation()
{
    QFETCH(QString, program);
    QFETCH(QString, folder);
    QFETCH(QString, refused);
    QFETCH(QStringList, started);
    QFETCH(bool, message);
    const QTemporaryDir here;
    MakeFile(here.filePath("MSINFO32.EXE"), "", false);
    MemoryRegistry registry;
    if (!program.isNull())
        registry.values[ProgramValue] = TextValue(program);
    if (!folder.isNull())
        registry.values[FolderValue] = TextValue(folder.replace("HERE", here.path()));
    RecordingShell shell;
    shell.refused << refused.replace("HERE", here.path());
    shell.installed = {{"/bin/own", {}}, {"/bin/other", {"--all"}}};
    ScriptedPrompts prompts;
    StartSysInfo(registry, shell, prompts);
    QCOMPARE(shell.started, started.replaceInStrings("HERE", here.path()));
    QCOMPARE(prompts.shown, message ? QList{Unavailable} : QList<MessagePrompt>{});
}

void tst_about::TheDesktopStartsWhatItHas()
{
    const QTemporaryDir folder;
    const QByteArray note =
        "#!/bin/sh\necho \"$@\" >> \"" + folder.path().toLocal8Bit() + "/note\"";
    MakeFile(folder.filePath("mate-system-monitor"), note, true);
    MakeFile(folder.filePath("gnome-control-center"), note, true); // for its own desktop only
    qputenv("PATH", folder.path().toLocal8Bit() + ":/bin");
    qputenv("XDG_CURRENT_DESKTOP", "XFCE");
    QtShell shell;
    const QList<ProgramCall> own = shell.SystemInformationPrograms();
    const ProgramCall expected = {folder.filePath("mate-system-monitor"), {"--show-system-tab"}};
    QCOMPARE(own, QList{expected});
    QVERIFY(!shell.Start(own.first()).Failed());
    const auto written = [&folder] {
        QFile file(folder.filePath("note"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QTRY_COMPARE(written(), QByteArray("--show-system-tab\n"));
    for (const QString &program : {folder.filePath("missing"), folder.path(), QString()}) {
        const Result started = shell.Start({program, {}});
        QVERIFY(started.Failed() && !started.Cause().isEmpty());
    }
}

QTEST_MAIN(tst_about)
#include "tst_about.moc"
