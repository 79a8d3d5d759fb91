// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureJoiner.h"
#include "CaptureSource.h"
#include "OpenFiles.h"
#include "RunState.h"
#include "TelegramBook.h"
#include "TelegramList.h"
#include "TelegramMoment.h"
#include "TrafficWork.h"
#include "WindowSettings.h"
#include "frmResponses.h"
#include "frmTraffic.h"
#include "support/Cases.h"
#include "support/ScriptedDisk.h"
#include "support/ScriptedPrompts.h"
#include "support/TestCapture.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDragEnterEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QTreeView>

namespace
{

using Kind = TrafficEvent::Kind;

constexpr qint64 Second = 1'000'000'000;
constexpr qint64 Start = 1'700'000'000 * Second; ///< 2023-11-14 22:13:20

QByteArray Capture(const QList<QPair<Kind, QByteArray>> &events)
{
    QList<TrafficEvent> made;
    for (const auto &[kind, bytes] : events) {
        TrafficEvent event;
        event.kind = kind;
        event.direction = kind == Kind::Sent ? 0 : 1;
        event.time.wall = Start + made.size() * Second;
        event.bytes = bytes;
        event.count = 1;
        if (kind == Kind::Sent)
            event.names = {"Ask, \xE4"};
        made << event;
    }
    return CaptureOf(made, {{"COM1", {}, 9600}});
}

/// The window on telegrams of one second each, and all that is done with them.
struct Desk {
    Desk()
    {
        book.Show(std::make_shared<CaptureSource>(
            std::make_shared<ScriptedDisk::Reader>(Capture({{Kind::Received, "=1+1"},
                                                            {Kind::Sent, "ask\r"},
                                                            {Kind::Received, "\xC4NSWER 1"},
                                                            {Kind::Break, {}},
                                                            {Kind::Sent, "ask\r"},
                                                            {Kind::Received, "answer 22"}}))));
        window.show();
        work = std::make_unique<TrafficWork>(
            window,
            TrafficWorkParts{
                [] { return QStringList{"Ask"}; },
                {folder, files, prompts, run},
                {[this] { return maySend; },
                 [this](const QByteArray &bytes, QWidget &) { made << "send " + bytes; },
                 [this](const QByteArray &bytes, QWidget &) { made << "receive " + bytes; }},
                {folder, disk, prompts, bookmarks,
                 [this](std::shared_ptr<const TelegramSource> capture, const QString &) {
                     book.Show(std::move(capture));
                 },
                 [this] { book.Show(record); }, [] { return false; }, [this] { made << "saved"; },
                 [this](const auto &, const QString &name, const auto &of) {
                     made << "copy " + name.toUtf8() + ": " +
                                 CaptureBookmarks::CommentsOf(of).join('|').toUtf8();
                     return saves;
                 },
                 [this](const QString &path, QWidget &) { made << "judge " + path.toUtf8(); },
                 [this](const QString &path) { made << "replay " + path.toUtf8(); }},
                responses});
        record = book.Source();
    }
    bool IsReady() const { return book.CountOfAll() == 6; }
    void GoTo(qint64 row) { window.List().GoTo(row); }
    qint64 InHand() const { return window.List().Current(); }
    template <typename Widget> Widget *Find(const char *name) const
    {
        return window.findChild<Widget *>(name);
    }
    void Do(const char *action) const { Find<QAction>(action)->trigger(); }
    QString CellOf(qint64 row, TelegramColumn column)
    {
        return window.List().CellText(row, int(column));
    }
    /// Types into the dialog that an action opens.
    void Answer(const char *action, const QString &text, QString *fault = nullptr) const
    {
        QTimer::singleShot(0, &window, [text, fault] {
            QWidget *dialog = QApplication::activeModalWidget();
            auto *line = dialog->findChild<QLineEdit *>("txtLine");
            line->setText(text);
            QTest::keyClick(line, Qt::Key_Return);
            if (fault)
                *fault = line->accessibleDescription();
            dialog->close();
        });
        Do(action);
    }

    ScriptedDisk disk;
    OpenFiles files{disk};
    ScriptedPrompts prompts;
    QString folder;
    RunState run;
    bool maySend = true;
    bool saves = true;
    QByteArrayList made; ///< what was asked of the program
    std::shared_ptr<TelegramBookmarks> bookmarks = std::make_shared<TelegramBookmarks>();
    std::shared_ptr<const TelegramSource> record;
    DisplaySettings display;
    TrafficWindowSettings settings;
    ResponseWindowSettings responses;
    TelegramBook book;
    frmTraffic window{{book, display, settings}};
    std::unique_ptr<TrafficWork> work;
};

} // namespace

class tst_trafficwork : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { qputenv("TZ", "UTC"); }

    void Moments_data()
    {
        const Cases<QString, qint64> row("text", "milliseconds");
        row("before the latest", "22:13:19", -1000);
        row("the latest", "22:13:20", 0);
        row("behind it is yesterday's", "22:13:21", 1000 - 86'400'000);
        row("without seconds", "22:13", -20'000);
        row("with a fraction", " 22:13:19,5 ", -500);
        row("with a day", "2023-11-15 00:00:00.001", 6'400'001);
        row("with a day, in the form of ISO", "2023-11-14T22:13:20", 0);
        row("a day", "2023-11-15", 6'400'000);
        for (const char *wrong : {"", "22", "24:00", "22:60", "2023-13-01", "2023-11-14x", "now"})
            row(qPrintable(QString("\"%1\"").arg(wrong)), wrong, -1);
    }
    void Moments()
    {
        QFETCH(QString, text);
        QFETCH(qint64, milliseconds);
        const auto moment = TelegramMoment::Of(text, Start);
        QCOMPARE(moment.value_or(Start - 1),
                 Start + (milliseconds == -1 ? -1 : milliseconds * 1'000'000));
    }

    void Finds_data()
    {
        const Cases<QString, QString, qint64, Qt::KeyboardModifiers, qint64, QString> row(
            "kind", "text", "from", "shift", "found", "said");
        const Qt::KeyboardModifiers down = Qt::NoModifier;
        const Qt::KeyboardModifiers up = Qt::ShiftModifier;
        row("text in any case", "Text", "\u00E4nswer", 0, down, 2, "");
        row("ASCII as it is", "ASCII", "answer", 0, down, 5, "");
        row("HEX", "HEX", "6B 0d", 1, down, 4, "");
        row("Decimal, upwards", "Decimal", "107 013", 4, up, 1, "");
        row("Binary", "Binary", "110010 110010", 0, down, 5, "");
        row("part of a name", "Sequence", "ASK, \u00C4", 4, up, 1, "");
        row("a mark", "Mark", "Break", 0, down, 3, "");
        row("none below", "Text", "1+1", 0, down, 0, "No more below");
        row("none above", "Text", "22", 5, up, 5, "No more above");
        row("no bytes", "HEX", "0x", 2, down, 2,
            "Item 1, \"0x\", is not a HEX byte: one or two of the digits 0 to 9 and A to F.");
        row("nothing", "ASCII", "", 2, down, 2, "Say first what to find.");
    }
    void Finds()
    {
        QFETCH(QString, kind);
        QFETCH(QString, text);
        QFETCH(qint64, from);
        QFETCH(Qt::KeyboardModifiers, shift);
        QFETCH(qint64, found);
        Desk desk;
        QTRY_VERIFY(desk.IsReady());
        desk.GoTo(from);
        desk.Do("mnuTrafficFind");
        desk.Find<QComboBox>("cboFindKind")->setCurrentText(kind);
        desk.Find<QLineEdit>("txtFind")->setText(text);
        desk.Find<QComboBox>("cboFindName")->setEditText(text);
        desk.Find<QComboBox>("cboFindMark")->setCurrentText(text);
        QTest::keyClick(desk.Find<QWidget>("txtFind"), Qt::Key_Return, shift);
        QFETCH(QString, said);
        const auto *label = desk.Find<QLabel>("lblFind");
        QTRY_COMPARE(label->text(), said);
        QTRY_COMPARE(desk.InHand(), found);
        if (said.startsWith("No more")) { // wraps when asked
            QTest::mouseClick(desk.Find<QPushButton>("cmdFindWrap"), Qt::LeftButton);
            QTRY_COMPARE(label->text(), QString());
            QCOMPARE(desk.InHand(), found);
        }
    }

    void GoesToTimesAndNumbers()
    {
        Desk desk;
        QTRY_VERIFY(desk.IsReady());
        desk.Answer("mnuTrafficGoToTime", "22:13:21.5");
        QTRY_COMPARE(desk.InHand(), 2);
        desk.Answer("mnuTrafficGoToNumber", "5");
        QTRY_COMPARE(desk.InHand(), 4);
        QString fault;
        desk.Answer("mnuTrafficGoToTime", "noon", &fault);
        QCOMPARE(fault, "\"noon\" is not such a time.");
    }

    void Filters_data()
    {
        const Cases<QString, QString, QString, int, QString> row("direction", "name", "bytes",
                                                                 "least", "count");
        row("all", "All", "", "", 0, "6 of 6 rows");
        row("sent", "Sent", "", "", 0, "2 of 6 rows");
        row("received, long", "Received", "", "", 9, "1 of 6 rows");
        row("events", "Events", "", "", 0, "1 of 6 rows");
        row("a sequence", "All", "Ask, \u00E4", "", 0, "2 of 6 rows");
        row("bytes", "All", "", "2", 0, "1 of 6 rows");
        row("nothing", "Sent", "", "22", 0, "0 of 6 rows");
    }
    void Filters()
    {
        QFETCH(QString, direction);
        QFETCH(QString, name);
        QFETCH(QString, bytes);
        QFETCH(int, least);
        Desk desk;
        QTRY_VERIFY(desk.IsReady());
        desk.GoTo(5);
        desk.window.List().SetFollows(false);
        QTRY_VERIFY(desk.book.Row(5));
        desk.Do("mnuTrafficFilter");
        desk.Find<QLineEdit>("txtContains")->setText(bytes);
        desk.Find<QSpinBox>("txtLeast")->setValue(least);
        desk.Find<QComboBox>("cboFilterName")->setEditText(name);
        desk.Find<QComboBox>("cboDirection")->setCurrentText(direction);
        QTest::keyClick(desk.Find<QWidget>("txtContains"), Qt::Key_Return);
        QFETCH(QString, count);
        const auto *label = desk.Find<QLabel>("lblCount");
        QTRY_COMPARE(label->text(), count);
        QTest::keyClick(desk.Find<QWidget>("txtContains"), Qt::Key_Escape);
        QTRY_COMPARE(label->text(), "6 of 6 rows");
        QVERIFY(!desk.Find<QWidget>("barFilter")->isVisible());
    }

    /// It stays in hand as long as the filter lets it through, else the next one comes.
    void AFilterKeepsTheRowInHand()
    {
        Desk desk;
        QTRY_VERIFY(desk.IsReady());
        desk.GoTo(3);
        desk.window.List().SetFollows(false);
        QTRY_VERIFY(desk.book.Row(3));
        desk.Do("mnuTrafficFilter");
        desk.Find<QComboBox>("cboDirection")->setCurrentText("Sent");
        QTRY_COMPARE(desk.InHand(), 1); // the second one sent, number 5
        QTRY_VERIFY(desk.book.Row(1));
        desk.Do("mnuTrafficFilterOff");
        QTRY_COMPARE(desk.InHand(), 4);
    }

    void Bookmarks()
    {
        Desk desk;
        QTRY_VERIFY(desk.IsReady());
        desk.GoTo(4);
        QTRY_VERIFY(desk.Find<QAction>("mnuTrafficBookmark")->isEnabled() && desk.book.Row(4));
        desk.Do("mnuTrafficBookmark");
        desk.GoTo(1);
        desk.Answer("mnuTrafficNote", " the first \n question");
        QTRY_COMPARE(desk.CellOf(1, TelegramColumn::Marks), "\u2691 the first question");
        QCOMPARE(desk.CellOf(4, TelegramColumn::Marks), "\u2691 bookmark");
        for (const auto &[action, row] :
             QList<QPair<const char *, qint64>>{{"mnuTrafficNextBookmark", 4},
                                                {"mnuTrafficNextBookmark", 1},
                                                {"mnuTrafficPreviousBookmark", 4},
                                                {"mnuTrafficPreviousBookmark", 1}}) {
            desk.Do(action);
            QTRY_COMPARE(desk.InHand(), row);
        }
        desk.Do("mnuTrafficBookmarks");
        auto *list = desk.Find<QTreeView>("lstBookmarks");
        QVERIFY(list->model()->setData(list->model()->index(1, 1), "again"));
        QCOMPARE(desk.bookmarks->Comments(),
                 (QStringList{"bookmark at 2023-11-14T22:13:21.000000000Z: the first question",
                              "bookmark at 2023-11-14T22:13:24.000000000Z: again"}));
        QTest::mouseClick(desk.Find<QPushButton>("cmdRemove"), Qt::LeftButton); // the first
        QTRY_COMPARE(desk.CellOf(1, TelegramColumn::Marks), QString());
        desk.GoTo(4);
        desk.Do("mnuTrafficBookmark");
        QVERIFY(desk.bookmarks->All().isEmpty());
        QVERIFY(!desk.Find<QAction>("mnuTrafficNextBookmark")->isEnabled());
    }

    void RowsAreCopiedAndBecomeSequences()
    {
        Desk desk;
        QTRY_VERIFY(desk.IsReady());
        desk.GoTo(0);
        QTRY_VERIFY(desk.Find<QAction>("mnuTrafficNewReceive")->isEnabled());
        desk.Do("mnuTrafficNewReceive");
        desk.maySend = false;
        desk.window.List().SelectRange(0, 1);
        QTRY_VERIFY(!desk.Find<QAction>("mnuTrafficNewSend")->isEnabled());
        desk.maySend = true;
        desk.window.List().SelectRange(0, 1);
        desk.Do("mnuTrafficNewSend");
        QCOMPARE(desk.made, (QByteArrayList{"receive =1+1", "send ask\r"}));
        const struct {
            const char *action;
            const char *text;
        } forms[] = {
            {"mnuTrafficCopy", "22:13:21.000000  1.000000  COM1  sent  4  61 73 6B 0D  ask\u240D"},
            {"mnuTrafficCopyCsv", "3D 31 2B 31,'=1+1,"},
            {"mnuTrafficCopyArray", "telegram_1[4] = {\n    0x3D, 0x31, 0x2B, 0x31\n};\n"}};
        for (const auto &form : forms) {
            desk.Do(form.action);
            const QString copied = QApplication::clipboard()->text();
            QVERIFY2(copied.contains(QString::fromUtf8(form.text)), qPrintable(copied));
        }
    }

    void RowsAreExported()
    {
        Desk desk;
        desk.disk.files["/x/there.csv"] = "old";
        QTRY_VERIFY(desk.IsReady());
        desk.GoTo(3);
        desk.prompts.chosen = {"/x/all", "/x/there.csv", "/x/one.txt", "/x/full.csv"};
        desk.prompts.answers = {PromptAnswer::No};
        desk.Do("mnuTrafficExportAll");
        QCOMPARE(desk.disk.files["/x/all.csv"].count('\n'), 7);
        QCOMPARE(desk.folder, "/x/");
        desk.Do("mnuTrafficExportSelected"); // asked whether to replace, and for another file
        QCOMPARE(desk.disk.files["/x/there.csv"], "old");
        QCOMPARE(desk.disk.files["/x/one.txt"].count('\n'), 1);
        desk.disk.room = 10;
        desk.Do("mnuTrafficExportShown");
        QVERIFY(desk.prompts.shown.last().text.contains("/x/full.csv: No space left on device"));
        QVERIFY(!desk.disk.files.contains("/x/full.csv"));
    }

    /// They are counted whatever the filter says, anew for another source, and lead to their rows.
    void ResponseTimes()
    {
        Desk desk;
        QTRY_VERIFY(desk.IsReady());
        desk.book.SetFilter({.directions = {true, false}});
        desk.Do("mnuTrafficResponses");
        auto *window = desk.Find<frmResponses>("frmResponses");
        QTRY_VERIFY(window && window->Book().Told().picture);
        desk.prompts.chosen = {"/x/table", "/x/times.csv"};
        window->findChild<QPushButton *>("cmdSaveTable")->click();
        window->findChild<QPushButton *>("cmdSaveTimes")->click();
        QCOMPARE(desk.disk.files["/x/table.csv"].split('\n')[1],
                 "\"Ask, \xC3\xA4\",sent by hand,1,2,2,0,1.000000,1.000000,1.000000,1.000000,"
                 "1.000000");
        QCOMPARE(desk.disk.files["/x/times.csv"].count('\n'), 3);

        desk.book.SetFilter({});
        QTRY_VERIFY(desk.IsReady());
        auto *points = window->findChild<QWidget *>("pltPoints");
        QTest::keyClick(points, Qt::Key_End);
        QTest::keyClick(points, Qt::Key_Return);
        QTRY_COMPARE(desk.InHand(), 5);
        desk.book.Show(std::make_shared<CaptureSource>(
            std::make_shared<ScriptedDisk::Reader>(Capture({{Kind::Sent, "x"}}))));
        QTRY_VERIFY(window->Book().Told().isWhole && window->Book().Told().rows.size() == 1);
        QCOMPARE(window->Book().Told().rows.first().count, 1);
    }

    void ACaptureIsShownInTheirPlace()
    {
        Desk desk;
        desk.disk.files["/c/a&b.pcapng"] = Capture({{Kind::Received, "x"}, {Kind::Received, "y"}});
        desk.disk.files["/c/text"] = "text";
        QTRY_VERIFY(desk.IsReady());
        desk.prompts.chosen = {"/c/text", "/c/a&b.pcapng"};
        desk.Do("mnuTrafficOpen");
        QVERIFY(desk.prompts.shown.last().text.startsWith("The capture text cannot be opened. "));
        desk.Do("mnuTrafficOpen");
        QTRY_COMPARE(desk.book.CountOfAll(), 2);
        QCOMPARE(desk.window.windowTitle(), "Traffic - a&b.pcapng");
        desk.GoTo(1);
        QTRY_VERIFY(desk.book.Row(1));
        desk.Do("mnuTrafficBookmark"); // of the capture alone
        QVERIFY(desk.bookmarks->All().isEmpty());
        QTest::mouseClick(desk.Find<QPushButton>("cmdJudge"), Qt::LeftButton);
        desk.Do("mnuTrafficReplay");
        desk.Do("mnuTrafficRecord");
        QTRY_VERIFY(desk.IsReady());
        QVERIFY(!desk.Find<QPushButton>("cmdReplay")->isEnabled());
        desk.Do("mnuTrafficSave");
        QCOMPARE(desk.made,
                 (QByteArrayList{"judge /c/a&b.pcapng", "replay /c/a&b.pcapng", "saved"}));

        QMimeData dropped;
        dropped.setUrls({QUrl::fromLocalFile("/c/a&b.pcapng")});
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&desk.window, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent drop({5, 5}, Qt::CopyAction, &dropped, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&desk.window, &drop);
        QTRY_COMPARE(desk.book.CountOfAll(), 2);
        QTRY_COMPARE(desk.CellOf(1, TelegramColumn::Marks), "\u2691 bookmark, after a gap");
    }

    /// They are lost with the capture that is shown, and nobody is asked if none would be.
    void ChangedBookmarksAreAskedFor()
    {
        Desk desk;
        const QString bookmark =
            CaptureBookmarks::CommentOf({Start + Second, QStringLiteral("there")});
        CaptureJoiner joiner({bookmark});
        joiner.Append(desk.disk.files["/c/a.pcapng"],
                      Capture({{Kind::Received, "x"}, {Kind::Received, "y"}}));
        desk.disk.files["/c/b.pcapng"] = Capture({{Kind::Received, "z"}});
        desk.prompts.chosen = {"/c/a.pcapng", "/c/b.pcapng", "/c/b.pcapng", "/c/b.pcapng"};
        desk.Do("mnuTrafficOpen");
        QTRY_COMPARE(desk.CellOf(1, TelegramColumn::Marks), "\u2691 there, after a gap");
        QVERIFY(desk.work->AskSaveBookmarks() && desk.prompts.shown.isEmpty());
        desk.GoTo(0);
        QTRY_VERIFY(desk.book.Row(0));
        desk.Do("mnuTrafficBookmark");
        desk.Do("mnuTrafficSave");
        const QByteArray copy =
            "copy a.pcapng: bookmark at 2023-11-14T22:13:20.000000000Z|" + bookmark.toUtf8();
        QCOMPARE(desk.made, QByteArrayList{copy});
        QVERIFY(desk.work->AskSaveBookmarks() && desk.prompts.shown.isEmpty());
        desk.Do("mnuTrafficBookmark"); // takes it away
        desk.saves = false;
        desk.prompts.answers = {PromptAnswer::Cancel, PromptAnswer::Yes, PromptAnswer::No};
        for (int asked = 1; asked <= 3; ++asked) {
            QCOMPARE(desk.window.windowTitle(), "Traffic - a.pcapng");
            desk.Do("mnuTrafficOpen"); // to stay, to save what fails, to give them up
            QCOMPARE(desk.prompts.shown.size(), asked);
        }
        QCOMPARE(desk.prompts.shown.last().text, "Save changes to the bookmarks of a.pcapng?");
        QCOMPARE(desk.made, (QByteArrayList{copy, "copy a.pcapng: " + bookmark.toUtf8()}));
        QCOMPARE(desk.window.windowTitle(), "Traffic - b.pcapng");
    }
};

QTEST_MAIN(tst_trafficwork)
#include "tst_trafficwork.moc"
