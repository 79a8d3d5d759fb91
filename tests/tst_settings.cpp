// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureSettings.h"
#include "CommSettings.h"
#include "DisplaySettings.h"
#include "LogSettings.h"
#include "MdSequenceEdition.h"
#include "PrintSettings.h"
#include "ProgramSettings.h"
#include "RecordSettings.h"
#include "SendLineSettings.h"
#include "SequenceSettings.h"
#include "StampText.h"
#include "StoredSettings.h"
#include "ViewSettings.h"
#include "WindowSettings.h"
#include "support/Cases.h"
#include "support/MemoryStore.h"

namespace
{

/// Every key with its default text.
QMap<QString, QString> Defaults()
{
    QMap<QString, QString> texts;
    for (const char *line :
         {"Settings MainLeft=0 MainTop=0 MainWidth=0 MainHeight=0 vSplitt=6000 hSplitt=6000",
          "Settings ProjectPath=",
          "Lists SendButtonWidth=48 SendNameWidth=140 SendSequenceWidth=192 ReceiveActiveWidth=48",
          "Lists ReceiveNameWidth=140 ReceiveSequenceWidth=112 ReceiveAnswerWidth=80",
          "Colors DispBack=16777215 Dir1TextColor=16711680 Dir2TextColor=255 CmtTextColor=32768",
          "TextSetup BldDir1=0 BldDir2=0 BldCmt=0 ItlDir1=0 ItlDir2=0 ItlCmt=0",
          "TextSetup UndrlnDir1=0 UndrlnDir2=0 UndrlnCmt=0",
          "SendReceive Display=0",
          "Communication CommType=0 CommPortA=1 CommPortB=2 CommSpeed=5 CommParity=2",
          "Communication CommDataBits=4 CommStopBits=0",
          "Stamp NewLine=True Date=False Time=False",
          "LogFile ASCII=True Decimal=False HEX=False Binary=False Format=0 Folder=",
          "View ControlCharacters=True",
          "Print MarginText=False",
          "Reconnection Reopen=False",
          "Captures Folder=",
          "Record MostMegabytes=1024",
          "NetworkPorts DeadAfterSeconds=10",
          "TrafficWindow Left=0 Top=0 Width=0 Height=0 DetailsHeight=0 CountsFrom=0",
          "TrafficWindow GapMicroseconds=-1 EndMark= FixedLength=0 EndsWithDetection=True",
          "TrafficWindow Checksum=",
          "TrafficWindow NumberWidth=-1 TimeWidth=-1 AfterWidth=-1 PortWidth=-1 BytesWidth=-1",
          "TrafficWindow HexWidth=-1",
          "TrafficWindow TextWidth=-1 SequenceWidth=-1 AnswerWidth=-1 MarksWidth=-1",
          "SendLine Form=0 Appends= EveryMilliseconds=1000 Count=0",
          "ResponseTimes Left=0 Top=0 Width=0 Height=0 LimitMilliseconds=1000",
          "ResponseTimes Logarithmic=False"}) {
        const QStringList words = QString(line).split(u' ');
        for (const QString &setting : words.sliced(1))
            texts[words[0] + u'/' + setting.section(u'=', 0, 0)] = setting.section(u'=', 1);
    }
    return texts;
}

struct SettingsBench {
    MemoryStore store;
    struct {
        CommSettings comm;
        WindowSettings window;
        ListSettings lists;
        DisplaySettings display, displayNext;
        StampSettings stamp;
        LogSettings log;
        SequenceSettings sequences;
        QString projectFolder;
        ViewSettings view;
        PrintSettings print;
        CaptureSettings captures;
        RecordSettings record;
        TrafficWindowSettings traffic;
        SendLineSettings sendLine;
        ResponseWindowSettings responses;
    } settings;
    StoredSettings places = {
        &settings.comm,          &settings.window,  &settings.lists,    &settings.display,
        &settings.displayNext,   &settings.stamp,   &settings.log,      &settings.sequences,
        &settings.projectFolder, &settings.view,    &settings.print,    &settings.captures,
        &settings.record,        &settings.traffic, &settings.sendLine, &settings.responses};
    MdSequenceEdition tables;
    QStringList notices;

    auto Load() { return ProgramSettings::LoadSettings(store, places, tables, notices); }
    void Save(bool minimised = false)
    {
        QVERIFY(!ProgramSettings::SaveSettings(store, places, minimised).Failed());
    }
};

} // namespace

class tst_settings : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AnEmptyStoreGivesTheDefaults()
    {
        SettingsBench bench;
        bench.settings.display.DispBack = bench.settings.comm.CommSpeed = 3;
        for (const int index : {0, 512, 1024})
            bench.tables.ChangeReceive(index, [](ReceiveSequence &r) { r.Active = 0; });
        QVERIFY(!bench.Load().Failed());
        QVERIFY(bench.store.texts.isEmpty());
        for (int i = 0; i < 1025; ++i)
            QCOMPARE(bench.tables.ReceiveAt(i).Active, qint16(1));
        bench.Save();
        QCOMPARE(bench.store.texts, Defaults());
    }

    void EverySettingIsSavedAndReadBack()
    {
        SettingsBench bench;
        int number = 100;
        auto changed = Defaults();
        for (auto text = changed.begin(); text != changed.end(); ++text) {
            if (text.key().startsWith("TextSetup"))
                *text = "1";
            else if (*text == "True" || *text == "False")
                *text = *text == "True" ? "False" : "True";
            else
                *text = QString::number(++number);
        }
        bench.store.texts = changed;
        QVERIFY(!bench.Load().Failed());
        bench.store.texts.clear();
        bench.Save();
        QCOMPARE(bench.store.texts, changed);
        QCOMPARE(bench.store.flushes, 1);
        QVERIFY(bench.settings.display == bench.settings.displayNext);
        QCOMPARE(bench.settings.projectFolder, changed["Settings/ProjectPath"]);
    }

    void TheSavedCopyOfTheLooksIsTheSecondOne()
    {
        SettingsBench bench;
        QVERIFY(!bench.Load().Failed());
        bench.settings.displayNext.styles[StyleIndex::Comment].underline = true;
        bench.settings.displayNext.DispBack = 0x00FFFF;
        bench.settings.display.styles[StyleIndex::Direction1].colour = 7;
        bench.Save();
        QCOMPARE(bench.store.texts["TextSetup/UndrlnCmt"], "1");
        QCOMPARE(bench.store.texts["Colors/DispBack"], "65535");
        QCOMPARE(bench.store.texts["Colors/Dir1TextColor"], "16711680");
    }

    void AMinimisedWindowKeepsItsStoredPlace()
    {
        SettingsBench bench;
        bench.store.texts = {{"Settings/MainLeft", "150"}, {"Settings/vSplitt", "1"}};
        bench.settings.window = {1, 2, 3, 4, 5000, 7000.5F};
        bench.Save(true);
        QCOMPARE(bench.store.texts["Settings/MainLeft"], "150");
        QVERIFY(!bench.store.texts.contains("Settings/MainWidth"));
        QCOMPARE(bench.store.texts["Settings/vSplitt"], "5000");
        QCOMPARE(bench.store.texts["Settings/hSplitt"], "7000.5");
    }

    void Converts_data()
    {
        const Cases<QString, QString, QString> row("key", "text", "saved"); // or null: it does not
        row("a flag", "Stamp/Date", "true", "True");
        row("a flag in capitals", "Stamp/Date", "FALSE", "False");
        row("minus one for a flag", "Stamp/Date", "-1", "True");
        row("zero for a flag", "Stamp/NewLine", "0", "False");
        row("a flag saved as a digit", "TextSetup/ItlCmt", "True", "1");
        row("the largest 16 bits", "Communication/CommPortA", "32767", "32767");
        row("the smallest 32 bits", "Communication/CommSpeed", "-2147483648", "-2147483648");
        row("a mode without a meaning", "Communication/CommType", "7", "7");
        row("a fraction", "Settings/vSplitt", "-0.1", "-0.1");
        row("large, without an exponent", "Settings/vSplitt", "1e20", "100000002004087734272");
        row("small, without an exponent", "Settings/vSplitt", "1e-7", "0.0000001");
        row("16 bits overflow", "Communication/CommPortA", "32768", {});
        row("32 bits overflow", "Colors/DispBack", "2147483648", {});
        row("a word for a number", "Communication/CommSpeed", "fast", {});
        row("a fraction for a whole number", "SendReceive/Display", "1.5", {});
        row("an empty text for a number", "LogFile/Format", "", {});
        row("more than 16 bits for a flag", "TextSetup/BldCmt", "70000", {});
        row("a word for a flag", "Stamp/NewLine", "yes", {});
        row("a decimal comma", "Settings/MainLeft", "1,5", {});
        row("not a number", "Settings/hSplitt", "nan", {});
        row("beyond a single float", "Settings/MainTop", "1e39", {});
    }
    void Converts()
    {
        QFETCH(const QString, key);
        QFETCH(const QString, text);
        QFETCH(const QString, saved);
        SettingsBench bench;
        bench.store.texts[key] = text;
        const Result loaded = bench.Load();
        QCOMPARE(loaded.Failed(), saved.isNull());
        QCOMPARE(bench.store.texts.size(), 1);
        QCOMPARE(bench.store.texts[key], text);
        if (loaded.Failed()) {
            for (const QString &part : key.split(u'/') + QStringList(text))
                QVERIFY2(loaded.Cause().contains('"' + part + '"'), qPrintable(loaded.Cause()));
            QVERIFY(loaded.Cause().contains(" in the file memory.conf,"));
            return;
        }
        bench.Save();
        QCOMPARE(bench.store.texts[key], saved);
        QVERIFY(bench.notices.isEmpty());
    }

    void ForgivesSomeDamage()
    {
        SettingsBench bench;
        bench.store.texts = {{"View/ControlCharacters", "perhaps"},
                             {"Record/MostMegabytes", "-1"},
                             {"Stamp/Date", "True"}};
        bench.settings.view.ControlCharacters = false;
        QVERIFY(!bench.Load().Failed());
        QVERIFY(bench.settings.view.ControlCharacters);
        QVERIFY(bench.settings.stamp.Date);
        QCOMPARE(
            bench.notices,
            QStringList("The setting \"ControlCharacters\" in section \"View\" holds the text "
                        "\"perhaps\", which is not True or False (file memory.conf). "
                        "\"True\" is used instead.")
                << "The setting \"MostMegabytes\" in section \"Record\" holds the text \"-1\", "
                   "which is not a whole number from 0 to 2147483647 (file memory.conf). "
                   "\"1024\" is used instead.");
        QCOMPARE(bench.settings.record.MostMegabytes, 1024);
    }
};

QTEST_GUILESS_MAIN(tst_settings)
#include "tst_settings.moc"
