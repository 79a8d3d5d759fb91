// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "project/ProgramSettings.h"
#include "project/SettingsRecord.h"
#include "sequences/MdSequenceEdition.h"
#include "support/MemoryStore.h"

#include <QTest>

using namespace ProgramSettings;

class tst_settings : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AnEmptyStoreGivesTheDefaults();
    void LoadingActivatesEveryPlace();
    void EverySettingIsSavedAndReadBack();
    void TheSavedCopyOfTheLooksIsTheSecondOne();
    void AMinimisedWindowKeepsItsStoredPlace();
    void TextsThatConvert_data();
    void TextsThatConvert();
    void TextsThatDoNotConvert_data();
    void TextsThatDoNotConvert();
    void FloatsAreWrittenShortAndPlain_data();
    void FloatsAreWrittenShortAndPlain();
};

namespace
{

/// Every key with its default text, in the order of saving.
const QList<std::pair<QString, QString>> Defaults = {
    {"Settings/MainLeft", "0"},
    {"Settings/MainTop", "0"},
    {"Settings/MainWidth", "0"},
    {"Settings/MainHeight", "0"},
    {"Settings/vSplitt", "6000"},
    {"Settings/hSplitt", "6000"},
    {"Settings/ProjectPath", ""},
    {"Lists/SendButtonWidth", "48"},
    {"Lists/SendNameWidth", "140"},
    {"Lists/SendSequenceWidth", "192"},
    {"Lists/ReceiveActiveWidth", "48"},
    {"Lists/ReceiveNameWidth", "140"},
    {"Lists/ReceiveSequenceWidth", "112"},
    {"Lists/ReceiveAnswerWidth", "80"},
    {"Colors/DispBack", "16777215"},
    {"Colors/Dir1TextColor", "16711680"},
    {"Colors/Dir2TextColor", "255"},
    {"Colors/CmtTextColor", "32768"},
    {"TextSetup/BldDir1", "0"},
    {"TextSetup/BldDir2", "0"},
    {"TextSetup/BldCmt", "0"},
    {"TextSetup/ItlDir1", "0"},
    {"TextSetup/ItlDir2", "0"},
    {"TextSetup/ItlCmt", "0"},
    {"TextSetup/UndrlnDir1", "0"},
    {"TextSetup/UndrlnDir2", "0"},
    {"TextSetup/UndrlnCmt", "0"},
    {"SendReceive/Display", "0"},
    {"Communication/CommType", "0"},
    {"Communication/CommPortA", "1"},
    {"Communication/CommPortB", "2"},
    {"Communication/CommSpeed", "5"},
    {"Communication/CommParity", "2"},
    {"Communication/CommDataBits", "4"},
    {"Communication/CommStopBits", "0"},
    {"Stamp/NewLine", "True"},
    {"Stamp/Date", "False"},
    {"Stamp/Time", "False"},
    {"LogFile/ASCII", "True"},
    {"LogFile/Decimal", "False"},
    {"LogFile/HEX", "False"},
    {"LogFile/Binary", "False"},
    {"LogFile/Format", "0"},
    {"LogFile/Folder", ""},
};

} // namespace

void tst_settings::AnEmptyStoreGivesTheDefaults()
{
    MemoryStore store;
    SettingsRecord settings;
    settings.display.DispBack = settings.comm.stored.CommSpeed = 3; // must be overwritten
    MdSequenceEdition tables;
    QVERIFY(!LoadSettings(store, settings, tables));
    QVERIFY(store.texts.isEmpty());
    SaveSettings(store, settings, false);
    for (const auto &[key, text] : Defaults)
        QCOMPARE(key + '=' + store.texts.take(key), key + '=' + text);
    QVERIFY2(store.texts.isEmpty(), "a key that the list of defaults lacks");
}

void tst_settings::LoadingActivatesEveryPlace()
{
    MdSequenceEdition tables;
    for (const int index : {0, 512, 1024})
        tables.EditReceive(index).Active = 0;
    SettingsRecord settings;
    LoadSettings(MemoryStore(), settings, tables);
    for (int i = 0; i < 1025; ++i)
        QCOMPARE(tables.ReceiveAt(i).Active, qint16(1));
}

void tst_settings::EverySettingIsSavedAndReadBack()
{
    MemoryStore store;
    int number = 100;
    for (const auto &[key, text] : Defaults)
        store.texts[key] = text == "True"    ? "False"
                           : text == "False" ? "True"
                                             : QString::number(++number);
    for (const char *key : {"BldDir1", "BldDir2", "BldCmt", "ItlDir1", "ItlDir2", "ItlCmt",
                            "UndrlnDir1", "UndrlnDir2", "UndrlnCmt"})
        store.texts[QStringLiteral("TextSetup/") + key] = "1";
    const auto stored = store.texts;
    SettingsRecord settings;
    MdSequenceEdition tables;
    QVERIFY(!LoadSettings(store, settings, tables));
    store.texts.clear();
    SaveSettings(store, settings, false);
    QCOMPARE(store.texts, stored);
    QCOMPARE(store.flushes, 1);
    QVERIFY(settings.display == settings.displayNext);
    QCOMPARE(settings.ProjectDirectory, stored["Settings/ProjectPath"]);
}

void tst_settings::TheSavedCopyOfTheLooksIsTheSecondOne()
{
    MemoryStore store;
    SettingsRecord settings;
    MdSequenceEdition tables;
    LoadSettings(store, settings, tables);
    settings.displayNext.styles[StyleIndex::Comment].underline = true;
    settings.displayNext.DispBack = 0x00FFFF;
    settings.display.styles[StyleIndex::Direction1].colour = 7;
    SaveSettings(store, settings, false);
    QCOMPARE(store.texts["TextSetup/UndrlnCmt"], QStringLiteral("1"));
    QCOMPARE(store.texts["Colors/DispBack"], QStringLiteral("65535"));
    QCOMPARE(store.texts["Colors/Dir1TextColor"], QStringLiteral("16711680"));
}

void tst_settings::AMinimisedWindowKeepsItsStoredPlace()
{
    MemoryStore store;
    store.texts = {{"Settings/MainLeft", "150"}, {"Settings/vSplitt", "1"}};
    SettingsRecord settings;
    settings.window = {1, 2, 3, 4, 5000, 7000.5F};
    SaveSettings(store, settings, true);
    QCOMPARE(store.texts["Settings/MainLeft"], QStringLiteral("150"));
    QVERIFY(!store.texts.contains("Settings/MainWidth"));
    QCOMPARE(store.texts["Settings/vSplitt"], QStringLiteral("5000"));
    QCOMPARE(store.texts["Settings/hSplitt"], QStringLiteral("7000.5"));
}

void tst_settings::TextsThatConvert_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("saved");
    for (const auto &[text, saved] : {std::pair("true", "True"),
                                      {"FALSE", "False"},
                                      {"1", "True"},
                                      {"-1", "True"},
                                      {"0", "False"},
                                      {"17", "True"}})
        QTest::addRow("flag %s", text) << "Stamp/Date" << text << saved;
    for (const auto &[text, saved] : {std::pair("True", "1"), {"false", "0"}, {"-1", "1"}})
        QTest::addRow("digit flag %s", text) << "TextSetup/ItlCmt" << text << saved;
    QTest::newRow("the largest 16 bits") << "Communication/CommPortA"
                                         << "32767"
                                         << "32767";
    QTest::newRow("the smallest 32 bits") << "Communication/CommSpeed"
                                          << "-2147483648"
                                          << "-2147483648";
    QTest::newRow("a mode without a meaning stays stored") << "Communication/CommType"
                                                           << "7"
                                                           << "7";
    QTest::newRow("an exponent is read") << "Settings/vSplitt"
                                         << "1e4"
                                         << "10000";
}

void tst_settings::TextsThatConvert()
{
    QFETCH(QString, key);
    QFETCH(QString, text);
    MemoryStore store;
    store.texts[key] = text;
    SettingsRecord settings;
    MdSequenceEdition tables;
    QVERIFY(!LoadSettings(store, settings, tables));
    SaveSettings(store, settings, false);
    QTEST(store.texts[key], "saved");
}

void tst_settings::TextsThatDoNotConvert_data()
{
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("16 bits overflow") << "Communication"
                                      << "CommPortA"
                                      << "32768";
    QTest::newRow("32 bits overflow") << "Colors"
                                      << "DispBack"
                                      << "2147483648";
    QTest::newRow("a word for a number") << "Communication"
                                         << "CommSpeed"
                                         << "fast";
    QTest::newRow("a fraction for a whole number") << "SendReceive"
                                                   << "Display"
                                                   << "1.5";
    QTest::newRow("an empty text for a number") << "LogFile"
                                                << "Format"
                                                << "";
    QTest::newRow("more than 16 bits for a flag") << "TextSetup"
                                                  << "BldCmt"
                                                  << "70000";
    QTest::newRow("a word for a flag") << "Stamp"
                                       << "NewLine"
                                       << "yes";
    QTest::newRow("a fraction for a flag") << "TextSetup"
                                           << "BldDir1"
                                           << "0.5";
    QTest::newRow("a decimal comma") << "Settings"
                                     << "MainLeft"
                                     << "1,5";
    QTest::newRow("not a number") << "Settings"
                                  << "hSplitt"
                                  << "nan";
    QTest::newRow("infinite") << "Settings"
                              << "MainWidth"
                              << "inf";
    QTest::newRow("beyond a single float") << "Settings"
                                           << "MainTop"
                                           << "1e39";
}

void tst_settings::TextsThatDoNotConvert()
{
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(QString, text);
    MemoryStore store;
    store.texts[section + '/' + key] = text;
    const auto before = store.texts;
    SettingsRecord settings;
    MdSequenceEdition tables;
    const auto bad = LoadSettings(store, settings, tables);
    QVERIFY(bad.has_value());
    for (const QString &part : {section, key, text})
        QVERIFY2(bad->Message().contains('"' + part + '"'), qPrintable(bad->Message()));
    QCOMPARE(store.texts, before);
}

void tst_settings::FloatsAreWrittenShortAndPlain_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 6000.0F << "6000";
    QTest::newRow("a fraction") << 0.1F << "0.1";
    QTest::newRow("negative") << -15.5F << "-15.5";
    QTest::newRow("large, without an exponent") << 1e20F << "100000002004087734272";
    QTest::newRow("small, without an exponent") << 1e-7F << "0.0000001";
}

void tst_settings::FloatsAreWrittenShortAndPlain()
{
    QFETCH(float, value);
    MemoryStore store;
    SettingsRecord settings;
    settings.window.vSplitt = value;
    SaveSettings(store, settings, false);
    QTEST(store.texts["Settings/vSplitt"], "text");
    settings.window.vSplitt = 0;
    MdSequenceEdition tables;
    LoadSettings(store, settings, tables);
    QCOMPARE(settings.window.vSplitt, value);
}

QTEST_GUILESS_MAIN(tst_settings)
#include "tst_settings.moc"
