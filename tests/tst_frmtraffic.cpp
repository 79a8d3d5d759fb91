// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureSource.h"
#include "MdRecord.h"
#include "MdTraffic.h"
#include "OpenFiles.h"
#include "RecordSettings.h"
#include "RunState.h"
#include "TelegramBook.h"
#include "TelegramHeader.h"
#include "TelegramList.h"
#include "WindowSettings.h"
#include "frmTelegramRule.h"
#include "frmTraffic.h"
#include "support/Cases.h"
#include "support/FixedClock.h"
#include "support/MemoryRecordFolder.h"
#include "support/ScriptedPrompts.h"
#include "support/TestCapture.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

namespace
{

constexpr qint64 Milli = 1'000'000;

/// "ab\r\ncd\r\n", read 100 ms after the one before.
QByteArray ReadsOf(int reads)
{
    QList<TrafficEvent> events;
    for (int i = 0; i < reads; ++i) {
        TrafficEvent event;
        event.time.wall = 1'700'000'000'000'000'000 + i * 100 * Milli;
        event.bytes = "ab\r\ncd\r\n";
        events << event;
    }
    return CaptureOf(events, {{QStringLiteral("COM1"), {}, 9600}});
}

} // namespace

/// The window with a capture of ten reads.
class tst_frmtraffic : public QObject
{
    Q_OBJECT

  private:
    DisplaySettings m_display;
    TrafficWindowSettings m_settings;
    std::unique_ptr<TelegramBook> m_book;
    std::unique_ptr<frmTraffic> m_window;

    void Show()
    {
        m_window.reset();
        m_book = std::make_unique<TelegramBook>();
        m_window = std::make_unique<frmTraffic>(TrafficWindowParts{*m_book, m_display, m_settings});
        m_book->Show(
            std::make_shared<CaptureSource>(std::make_shared<ScriptedDisk::Reader>(ReadsOf(10))));
        m_window->ShowOrigin({QStringLiteral("Capture x"), QStringLiteral("Times of reads")});
        m_window->List().SetFollows(false);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        QTRY_VERIFY(m_book->Background().work == TelegramBook::Progress::Work::None);
        QTRY_VERIFY(m_book->End() > 0);
    }
    QString Text(const char *label) const
    {
        return m_window->findChild<QLabel *>(QString::fromLatin1(label))->text();
    }

  private Q_SLOTS:
    void init() { m_settings = {}; }

    void tellsWhatIsShownAndChosen()
    {
        Show();
        QTRY_COMPARE(Text("lblShown"), QStringLiteral("10 telegrams"));
        QCOMPARE(Text("lblSource"), QStringLiteral("Capture x"));
        QCOMPARE(m_window->List().SeenRows().first, 0); // a capture is read from its beginning
        m_window->List().SelectRange(2, 5);
        QTRY_COMPARE(Text("lblChosen"),
                     QStringLiteral("4 rows: 32 bytes, 300.000 ms from first to last"));
        m_window->List().GoTo(0);
        QTest::keyClick(&m_window->List(), Qt::Key_Down, Qt::ControlModifier);
        QTest::keyClick(&m_window->List(), Qt::Key_Down, Qt::ControlModifier);
        QTest::keyClick(&m_window->List(), Qt::Key_Space, Qt::ControlModifier);
        QTRY_COMPARE(Text("lblChosen"),
                     QStringLiteral("2 rows: 16 bytes, 200.000 ms from first to last"));
        QVERIFY(Text("lblTelegram").startsWith(QStringLiteral("No. 3 ")));
    }

    void tellsWhereTelegramsComeFrom_data()
    {
        const Cases<qint32, qint64, QStringList, QString, QString> row("bound", "room", "devices",
                                                                       "source", "times");
        const qint64 plenty = ScriptedDisk::Plenty;
        const QString record = QStringLiteral("Record of this session since ");
        const QString memory =
            QStringLiteral("From memory, the last 64 MiB: the session's record ");
        const QString reads = QStringLiteral("Times of reads");
        const QString adapter = reads + QStringLiteral("; the adapter may add up to 16 ms");
        row("no port is open", 1, plenty, {}, record, adapter);
        row("no adapter", 1, plenty, {"/dev/ttyS97", "/dev/pts/97"}, record, reads);
        row("an adapter that does not tell", 1, plenty, {"/dev/ttyS97", "/dev/ttyUSB97"}, record,
            adapter);
        row("a port elsewhere", 1, plenty, {"/dev/ttyUSB97", "rfc2217://there:1"}, record,
            reads + QStringLiteral("; server and network add their own"));
        row("no record", 0, plenty, {"/dev/ttyS97"}, memory + QStringLiteral("is switched off"),
            reads);
        row("a full disk", 1, 0, {"/dev/ttyS97"},
            memory + QStringLiteral("cannot be written: No space left on device"), reads);
    }

    void tellsWhereTelegramsComeFrom()
    {
        QFETCH(qint32, bound);
        QFETCH(qint64, room);
        QFETCH(QStringList, devices);
        const auto folder = std::make_shared<MemoryRecordFolder>();
        folder->room = room;
        RecordSettings settings{bound};
        QString lastFolder;
        ScriptedDisk disk;
        OpenFiles files(disk);
        ScriptedPrompts prompts;
        const FixedClock clock;
        const RunState run;
        MdRecord record({settings, lastFolder, files, prompts, clock, run}, folder, "test");
        record.ApplySettings();
        record.Consumer().Begin({.ports = {{"COM1", {}, 9600}}});
        TrafficEvent event;
        event.time.wall = 1'700'000'000'000'000'000;
        event.bytes = "here";
        record.Consumer().Take(event);
        record.Keep();
        MdTraffic traffic({record, m_display, m_settings, [&devices] { return devices; }});
        traffic.Show();
        const auto text = [&traffic](const char *label) {
            return traffic.Window()->findChild<QLabel *>(label)->text();
        };
        QFETCH(QString, source);
        QFETCH(QString, times);
        QVERIFY2(text("lblSource").startsWith(source), qPrintable(text("lblSource")));
        QCOMPARE(text("lblTimes"), times);
        QTRY_COMPARE(traffic.Window()->List().CellText(0, int(TelegramColumn::Text)), "here");
        record.Finish();
    }

    /// What was looked at is found again by its time; the rule is remembered.
    void cutsAnew()
    {
        Show();
        QTRY_VERIFY(m_book->Row(7));
        m_window->List().GoTo(7);
        QTimer::singleShot(0, m_window.get(), [this] {
            auto *dialog = m_window->findChild<frmTelegramRule *>();
            dialog->findChild<QRadioButton *>("rdoNoGap")->click();
            dialog->findChild<QCheckBox *>("chkEndMark")->click();
            auto *mark = dialog->findChild<QLineEdit *>("txtEndMark");
            mark->setText(QStringLiteral("no HEX"));
            dialog->accept();
            QVERIFY(dialog->isVisible() &&
                    !dialog->findChild<QLabel *>("lblRefusal")->text().isEmpty());
            mark->setText(QStringLiteral("0d0a"));
            dialog->accept();
        });
        m_window->findChild<QAction *>("mnuTrafficRules")->trigger();
        QTRY_COMPARE(m_book->CountOfAll(), 20);
        QTRY_COMPARE(m_window->List().Current(), 14);
        QCOMPARE(m_settings.EndMark, QStringLiteral("0D 0A"));
        QCOMPARE(m_settings.GapMicroseconds, 0);
        Show();
        QTRY_COMPARE(m_book->CountOfAll(), 20);
    }

    void remembersItsPlace()
    {
        Show();
        m_window->resize(700, 500);
        m_window->List().Header().Columns()[int(TelegramColumn::Marks)]->trigger();
        m_window->close();
        Show();
        QCOMPARE(m_window->size(), QSize(700, 500));
        QVERIFY(m_window->List().Header().isSectionHidden(int(TelegramColumn::Marks)));
    }
};

QTEST_MAIN(tst_frmtraffic)
#include "tst_frmtraffic.moc"
