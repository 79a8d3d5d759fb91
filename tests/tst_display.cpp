// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Display.h"

#include <QTest>

class tst_display : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_before = qgetenv("QT_QPA_PLATFORM"); }
    void cleanup() { qputenv("QT_QPA_PLATFORM", m_before); }

    void WhereItWillBeSeen_data()
    {
        QTest::addColumn<QByteArray>("platform");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("chosen");
        QTest::addColumn<bool>("seen");

        const QStringList none;
        QTest::newRow("the desktop's") << QByteArray() << none << false << true;
        QTest::newRow("xcb") << QByteArray("xcb") << none << false << true;
        QTest::newRow("with a fallback") << QByteArray("wayland;xcb") << none << false << true;
        QTest::newRow("Wayland with EGL") << QByteArray("wayland-egl") << none << false << true;
        QTest::newRow("no display") << QByteArray("offscreen") << none << false << false;
        QTest::newRow("over the network") << QByteArray("vnc:port=5901") << none << false << false;
        QTest::newRow("chosen") << QByteArray() << QStringList{"-platform", "offscreen"} << true
                                << false;
        QTest::newRow("chosen, one word")
            << QByteArray("xcb") << QStringList{"a.prj", "--platform=vnc"} << true << false;
        QTest::newRow("its theme")
            << QByteArray() << QStringList{"-platformtheme", "gtk3"} << false << true;
        QTest::newRow("a file of that name")
            << QByteArray() << QStringList{"platform", "my-platform"} << false << true;
    }

    void WhereItWillBeSeen()
    {
        QFETCH(const QByteArray, platform);
        QFETCH(const QStringList, arguments);
        qputenv("QT_QPA_PLATFORM", platform);
        QTEST(ChoosesPlatform(arguments), "chosen");
        QTEST(WillBeSeen(arguments), "seen");
    }

  private:
    QByteArray m_before;
};

QTEST_GUILESS_MAIN(tst_display)
#include "tst_display.moc"
