// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommConfiguration.h"
#include "support/Cases.h"

class tst_commsettings : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void SettingsText()
    {
        const std::pair<std::array<int, 4>, QString> rows[] = {
            {{5, 2, 4, 0}, "9600,N,8,1"},
            {{4, 3, 3, 1}, "2400,O,7,1.5"}, // there is no 4800
            {{14, 4, 0, 2}, "256000,S,4,2"},
            {{5, 5, 4, 0}, "9600,8,1"}, // what has no name leaves its field out
            {{15, 1, 4, 0}, ",M,8,1"},
            {{-1, -1, -1, -1}, ",,"}};
        for (const auto &[indexes, text] : rows) {
            CommSettings settings;
            settings.CommSpeed = indexes[0];
            settings.CommParity = indexes[1];
            settings.CommDataBits = indexes[2];
            settings.CommStopBits = indexes[3];
            QCOMPARE(SettingsString(settings), text);
        }
        QCOMPARE(ModeFromNumber(2), CommMode::MonitorReceiveAndModify);
        QCOMPARE(ModeFromNumber(7), CommMode::SendReceive);
    }

    void LineSettingsAreReadStrictly()
    {
        for (const char *good : {"9600,N,8,1", "921600,E,7,2", "1,S,4,1.5", "2147483647,M,8,1"})
            QCOMPARE(LineSettingsText(*ParseLineSettings(QString(good))), good);
        QCOMPARE(LineSettingsText(*ParseLineSettings(u"9600,o,8,1")), "9600,O,8,1");
        const char *refused[] = {
            "",           "9600",        "9600,8,1",    "9600,N,8,1,", "9600,N,8",
            ",N,8,1",     "0,N,8,1",     "-9600,N,8,1", "+9600,N,8,1", "2147483648,N,8,1",
            "1e5,N,8,1",  " 9600,N,8,1", "9600,N,8,1 ", "9600,X,8,1",  "9600,,8,1",
            "9600,N,3,1", "9600,NN,8,1", "9600,N,9,1",  "9600,N,8,3",  "9600,N,8,1.0",
            "9600;N;8;1", "9600,N,8,1,5"};
        for (const char *text : refused)
            QVERIFY2(!ParseLineSettings(QString(text)), text);
        QVERIFY(!ParseLineSettings(u"9600,\u017F,8,1")); // the long s, whose capital is S
        QVERIFY(!ParseLineSettings(u"\u0669600,N,8,1"));
        QVERIFY(!ParseLineSettings(QString(1048576, u'9') + ",N,8,1"));
    }

    void TheRunGoesBeforeTheStore()
    {
        CommConfiguration comm;
        comm.stored.CommPortA = 7;
        comm.stored.CommType = 1;
        QCOMPARE(comm.Mode(), CommMode::MonitorReceiveOnly);
        QCOMPARE(comm.PortSettings(), "9600,N,8,1");

        comm.run.mode = CommMode::SendReceive;
        comm.run.line = ParseLineSettings(u"921600,E,7,1.5");
        comm.run.portA = 1;
        QVERIFY(!comm.TwoChannels());
        QCOMPARE(comm.PortA(), 1);
        QCOMPARE(comm.PortB(), 2);
        QCOMPARE(comm.PortSettings(), "921600,E,7,1.5");
        const LineTexts texts = comm.Texts();
        QCOMPARE((QStringList{texts.speed, texts.parity, texts.dataBits, texts.stopBits}),
                 (QStringList{"921600", "Even", "7", "1.5"}));
        QCOMPARE(comm.stored.CommPortA, qint16(7));
    }
};

QTEST_GUILESS_MAIN(tst_commsettings)
#include "tst_commsettings.moc"
