// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "comm/CommConfiguration.h"

#include <QTest>

class tst_commsettings : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void SettingsText_data();
    void SettingsText();
    void TablesKeepTheirPlaces();
    void LineSettingsAreReadStrictly_data();
    void LineSettingsAreReadStrictly();
    void TheRunGoesBeforeTheStore();
};

void tst_commsettings::SettingsText_data()
{
    QTest::addColumn<QList<int>>("indexes"); // speed, parity, data bits, stop bits
    QTest::addColumn<QString>("text");

    QTest::newRow("the defaults") << QList<int>{5, 2, 4, 0} << "9600,N,8,1";
    QTest::newRow("one and a half stop bits") << QList<int>{7, 0, 3, 1} << "19200,E,7,1.5";
    QTest::newRow("the ends of the tables") << QList<int>{14, 4, 0, 2} << "256000,S,4,2";
    QTest::newRow("a parity without a name leaves its field out")
        << QList<int>{5, 5, 4, 0} << "9600,8,1";
    QTest::newRow("a speed without a name leaves the comma first")
        << QList<int>{15, 1, 4, 0} << ",M,8,1";
    QTest::newRow("negative indexes have no texts") << QList<int>{-1, -1, -1, -1} << ",,";
}

void tst_commsettings::SettingsText()
{
    QFETCH(QList<int>, indexes);
    CommSettings settings;
    settings.CommSpeed = indexes[0];
    settings.CommParity = indexes[1];
    settings.CommDataBits = indexes[2];
    settings.CommStopBits = indexes[3];
    QTEST(SettingsString(settings), "text");
}

void tst_commsettings::TablesKeepTheirPlaces()
{
    const QStringList speeds = {"110",   "300",   "600",    "1200",   "2400",
                                "9600",  "14400", "19200",  "28800",  "38400",
                                "56000", "57600", "115200", "128000", "256000"};
    for (int i = 0; i < speeds.size(); ++i)
        QCOMPARE(SpeedText(i), speeds[i]);
    QCOMPARE(SpeedText(15), QString());
    QCOMPARE(ParityText(2), QStringLiteral("None"));
    QCOMPARE(ParityText(4), QStringLiteral("Space"));
    QCOMPARE(DataBitsText(0), QStringLiteral("4"));
    QCOMPARE(StopBitsText(1), QStringLiteral("1.5"));
    QCOMPARE(ModeCaption(CommMode::MonitorReceiveAndModify),
             QStringLiteral("Monitoring (Receive and Modify)"));
    QCOMPARE(ModeFromNumber(7), CommMode::SendReceive);
}

void tst_commsettings::LineSettingsAreReadStrictly_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("readBack"); // empty: refused

    for (const char *good : {"9600,N,8,1", "921600,E,7,2", "1,S,4,1.5", "2147483647,M,8,1"})
        QTest::newRow(good) << QString(good) << QString(good);
    QTest::newRow("a small letter") << "9600,o,8,1"
                                    << "9600,O,8,1";
    for (const char *bad : {"",
                            ",",
                            "9600",
                            "9600,8,1",
                            "9600,N,8,1,",
                            "9600,N,8",
                            ",N,8,1",
                            "0,N,8,1",
                            "-9600,N,8,1",
                            "+9600,N,8,1",
                            "2147483648,N,8,1",
                            "1e5,N,8,1",
                            " 9600,N,8,1",
                            "9600,N,8,1 ",
                            "9600,X,8,1",
                            "9600,,8,1",
                            "9600,NN,8,1",
                            "9600,N,3,1",
                            "9600,N,9,1",
                            "9600,N,8,1.0",
                            "9600,N,8,1,5",
                            "9600,N,8,3",
                            "9600;N;8;1",
                            "0x2580,N,8,1"})
        QTest::newRow(qPrintable(QStringLiteral("refused: \"%1\"").arg(bad)))
            << QString(bad) << QString();
    QTest::newRow("refused: the long s that capitals turn into S")
        << QStringLiteral("9600,\u017F,8,1") << QString();
    QTest::newRow("refused: Arabic digits") << QStringLiteral("\u0669600,N,8,1") << QString();
    QTest::newRow("refused: a megabyte") << QString(1048576, u'9') + ",N,8,1" << QString();
}

void tst_commsettings::LineSettingsAreReadStrictly()
{
    QFETCH(QString, text);
    const auto settings = ParseLineSettings(text);
    QTEST(settings ? LineSettingsText(*settings) : QString(), "readBack");
}

void tst_commsettings::TheRunGoesBeforeTheStore()
{
    CommConfiguration comm;
    comm.stored.CommPortA = 7;
    comm.stored.CommType = 1;
    QCOMPARE(comm.Mode(), CommMode::MonitorReceiveOnly);
    QCOMPARE(comm.PortSettings(), QStringLiteral("9600,N,8,1"));

    comm.run.mode = CommMode::SendReceive;
    comm.run.line = ParseLineSettings(u"921600,E,7,1.5");
    comm.run.portA = 1;
    QVERIFY(!comm.TwoChannels());
    QCOMPARE(comm.PortA(), 1);
    QCOMPARE(comm.PortB(), 2);
    QCOMPARE(comm.PortSettings(), QStringLiteral("921600,E,7,1.5"));
    const LineTexts texts = comm.Texts();
    QCOMPARE((QStringList{texts.speed, texts.parity, texts.dataBits, texts.stopBits}),
             (QStringList{"921600", "Even", "7", "1.5"}));
    QCOMPARE(comm.stored.CommPortA, qint16(7));
}

QTEST_GUILESS_MAIN(tst_commsettings)
#include "tst_commsettings.moc"
