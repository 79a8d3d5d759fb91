// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "Icons.h"

#include <QBitmap>
#include <QDir>
#include <QTest>

class TestIcons final : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    /// Each icon is sharp at every scale, and what is disabled can be told from what is not.
    void AreThereInEachSize_data()
    {
        QTest::addColumn<QList<int>>("sides"); // in pixels
        QTest::addColumn<int>("largest");
        for (const QString &name : QDir(":/icons").entryList()) {
            if (name == "about")
                QTest::addRow("about") << QList<int>{64, 80, 96, 112, 128, 192} << 192;
            else if (name == "serimonde")
                QTest::addRow("serimonde") << QList<int>{16, 32, 64, 128} << 128;
            else
                QTest::addRow("%s", qPrintable(name)) << QList<int>{24, 30, 36, 42, 48, 72} << 72;
        }
    }
    void AreThereInEachSize()
    {
        QFETCH(QList<int>, sides);
        QFETCH(int, largest);
        const QIcon icon = Icons::Named(QTest::currentDataTag());
        QCOMPARE(icon.availableSizes().size(), sides.size());
        for (const int side : sides + QList<int>{27, largest + 50}) {
            const QPixmap shown = icon.pixmap({side, side}, 1.0);
            QCOMPARE(shown.width(), qMin(side, largest));
            QVERIFY(!QRegion(shown.mask()).isEmpty()); // something is drawn
            QVERIFY(icon.pixmap({side, side}, 1.0, QIcon::Disabled).toImage() != shown.toImage());
        }
        QCOMPARE(icon.pixmap({24, 24}, 1.75).size(), QSize(42, 42));
    }
};

QTEST_MAIN(TestIcons)
#include "tst_icons.moc"
