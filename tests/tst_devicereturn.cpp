// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DeviceSearch.h"
#include "ReturnPlan.h"
#include "support/PtyPair.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>

class tst_devicereturn : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void WhenADeviceIsTriedAgain()
    {
        ReturnPlan plan;
        QVERIFY(!plan.IsDue({}, 0));
        QCOMPARE(plan.PauseFrom(0), 50);
        QList<qint64> tries, told;
        for (qint64 now = 1000; now < 40000; now += std::max<qint64>(1, plan.PauseFrom(now))) {
            if (!plan.IsDue("there", now))
                continue;
            tries << now - 1000;
            if (plan.NoteFailure(now))
                told << now - 1000;
        }
        QCOMPARE(tries.first(7), (QList<qint64>{0, 20, 60, 140, 300, 620, 1260}));
        QCOMPARE(told, QList<qint64>{20000}); // and tried on
        QCOMPARE(tries.last(3), (QList<qint64>{25000, 30000, 35000}));
        QVERIFY(plan.IsDue("there, with other rights", 40001));
        QVERIFY(!plan.NoteFailure(40001));
        QVERIFY(!plan.IsDue({}, 40002));
        QVERIFY(plan.IsDue("there", 40003)); // another coming back
        QVERIFY(!plan.NoteFailure(60002));
        QVERIFY(plan.NoteFailure(60003));
    }

    void NoOtherDeviceIsTakenForOneThatWent()
    {
        const QTemporaryDir folder;
        const QDir root(folder.path());
        const auto path = [&](const char *name) { return root.filePath(name); };
        const auto link = [&](const char *target, const char *name) {
            root.mkpath(QFileInfo(name).path());
            QFile::remove(path(name));
            QVERIFY(QFile::link(path(target), path(name)));
        };
        const auto plug = [&](const char *name) {
            QVERIFY(QFile(path(name)).open(QIODevice::WriteOnly));
        };
        plug("ttyUSB0");
        plug("ttyUSB1");
        link("ttyUSB0", "by-id/adapter");
        link("ttyUSB0", "by-path/left");
        link("ttyUSB1", "by-path/right");
        DeviceSearch search(path("ttyUSB0"), path("ttyUSB0"), root.path());
        QCOMPARE(search.Names(), (QStringList{path("by-id/adapter"), path("by-path/left")}));
        search.NoteOthers();
        QFile::remove(path("by-id/adapter"));
        QCOMPARE(search.Find(), ""); // whoever has ttyUSB0 now
        link("ttyUSB1", "by-id/adapter");
        QFile::remove(path("by-path/left"));
        QCOMPARE(search.Find(), ""); // its twin took the name
        plug("ttyUSB2");
        link("ttyUSB2", "by-path/left");
        QCOMPARE(search.Find(), path("ttyUSB2")); // but not its socket
        link("ttyUSB2", "by-id/adapter");
        QCOMPARE(search.Find(), path("ttyUSB2"));

        auto lent = std::make_unique<PtyPair>();
        QVERIFY(QFile::link(lent->DeviceName(), path("own")));
        DeviceSearch byLink(lent->DeviceName(), path("own"), root.path());
        QCOMPARE(byLink.Find(), ""); // the number may be anybody's by now
        QFile::remove(path("own"));
        QVERIFY(QFile::link(lent->DeviceName(), path("new")) &&
                QFile::rename(path("new"), path("own")));
        QCOMPARE(byLink.Find(), lent->DeviceName());
    }
};

QTEST_GUILESS_MAIN(tst_devicereturn)
#include "tst_devicereturn.moc"
