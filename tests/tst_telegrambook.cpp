// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RecordSegments.h"
#include "RecordSource.h"
#include "TelegramBook.h"
#include "support/Cases.h"
#include "support/EndlessFile.h"
#include "support/MemoryRecordFolder.h"
#include "support/TelegramScript.h"

#include <QSignalSpy>

#include <condition_variable>
#include <mutex>

using namespace TelegramScript;

namespace
{

using Progress = TelegramBook::Progress;

/// Telegrams are 100 ms apart: "0", "1", ..., each received.
QByteArray Numbered(int first, int count, qsizetype length = 0)
{
    CaptureEncoder encoder({}, {});
    QByteArray packets;
    for (int i = first; i < first + count; ++i) {
        TrafficEvent event;
        event.time.wall = Start + i * 100 * Millisecond;
        event.bytes = QByteArray::number(i).leftJustified(length, '-');
        encoder.Append(packets, event);
    }
    return packets;
}

QByteArray Head()
{
    return CaptureEncoder({{"COM1", {}, 9600}}, "test").Head();
}

bool IsIdle(const TelegramBook &book)
{
    return book.Background().work == Progress::Work::None;
}

QByteArray BytesOf(TelegramBook &book, qint64 row)
{
    const Telegram *telegram = book.Row(row);
    return telegram ? telegram->bytes : QByteArray();
}

/// A capture whose third quarter the disk does not give while it hangs.
class HangingFile final : public InputDevice
{
  public:
    explicit HangingFile(const QByteArray &file) : m_file(file) {}

    Given ReadAt(qint64 place, char *bytes, qint64 most) const override
    {
        std::unique_lock lock(m_lock);
        m_changed.wait(lock, [&] { return !m_hangs || place * 4 / Size() != 2; });
        return m_file.ReadAt(place, bytes, most);
    }
    qint64 Size() const override { return m_file.Size(); }
    void SetHangs(bool hangs)
    {
        const std::lock_guard lock(m_lock);
        m_hangs = hangs;
        m_changed.notify_all();
    }

  private:
    const ScriptedDisk::Reader m_file;
    mutable std::mutex m_lock; ///< guards what follows
    mutable std::condition_variable m_changed;
    bool m_hangs = false;
};

/// The rows of a book once it has them all.
QByteArrayList BytesOfAll(TelegramBook &book)
{
    QByteArrayList rows;
    for (qint64 row = book.First(); row < book.End(); ++row)
        rows << BytesOf(book, row);
    return rows;
}

/// A record in memory, and the book that shows it.
struct Session {
    explicit Session(qint64 bound)
    {
        segments->SetBound(bound);
        segments->BeginSection(Head()).Ignore();
        book.Show(std::make_shared<RecordSource>(segments));
    }
    void Write(QByteArrayView packets) { segments->Write(packets).Ignore(); }

    std::shared_ptr<MemoryRecordFolder> folder = std::make_shared<MemoryRecordFolder>();
    std::shared_ptr<RecordSegments> segments =
        std::make_shared<RecordSegments>(folder, "now", [](const Result &) {});
    TelegramBook book;
};

} // namespace

class tst_telegrambook : public QObject
{
    Q_OBJECT

    /// 1 TB.
    const std::shared_ptr<InputDevice> m_endless =
        std::make_shared<EndlessFile>(Head(), Numbered(0, 5000), qint64(1) << 40);

  private Q_SLOTS:
    /// Rows keep their numbers while older ones go, and the last one grows.
    void FollowsARecord()
    {
        Session session(1 << 20);
        TelegramBook &book = session.book;
        session.Write(Numbered(0, 3));
        QTRY_COMPARE(BytesOfAll(book), (QByteArrayList{"0", "1", "2"}));
        TrafficEvent more;
        more.time.wall = Start + 202 * Millisecond;
        more.bytes = "more";
        QByteArray packets;
        CaptureEncoder({}, {}).Append(packets, more);
        session.Write(packets);
        QTRY_COMPARE(BytesOf(book, 2), "2more");
        int count = 3;
        while (session.segments->State().taken == 0) {
            session.Write(Numbered(count, 100, 500));
            count += 100;
            QTRY_COMPARE(book.End(), count);
        }
        QTRY_VERIFY(book.First() > 0);
        for (const qint64 row : {book.First(), (book.First() + count) / 2, qint64(count - 1)}) {
            QTRY_COMPARE(BytesOf(book, row).left(9).replace('-', "").toInt(), int(row));
            QCOMPARE(book.Row(row)->number, row + 1);
        }
        QCOMPARE(book.CountOfAll(), book.End() - book.First());
        QVERIFY(!book.Row(book.First() - 1));
    }

    /// Switched off, or with its disk full, a record leaves the rest to memory, in order.
    void GoesOnInMemory()
    {
        Session session(1 << 20);
        TelegramBook &book = session.book;
        session.Write(Numbered(0, 2));
        QVERIFY(!book.Source()->IsInMemory());
        session.folder->room = 0;
        session.Write(Numbered(2, 2));
        QTRY_COMPARE(BytesOfAll(book), (QByteArrayList{"0", "1", "2", "3"}));
        QVERIFY(book.Source()->IsInMemory());
        session.folder->room = ScriptedDisk::Plenty;
        session.segments->BeginSection(Head()).Ignore();
        session.Write(Numbered(4, 2));
        // What the record lacks it tells itself.
        QTRY_COMPARE(BytesOfAll(book), (QByteArrayList{"0", "1", "2", "3", "", "4", "5"}));
        session.segments->SetBound(0);
        session.Write(Numbered(6, 1));
        // Those between have gone with the record.
        QTRY_COMPARE(BytesOfAll(book), (QByteArrayList{"2", "3", "", "", "", "6"}));
        for (int i = 0; i < 70; ++i) {
            session.Write(Numbered(7 + i * 100, 100, 10'000));
            if (i % 10 == 9)
                QTRY_COMPARE(book.End(), 8 + (i + 1) * 100);
        }
        QTRY_VERIFY(book.First() > 100 && book.CountOfAll() > 5000);
        QTRY_COMPARE(BytesOf(book, book.First()).size(), 10'000);
    }

    void FiltersAndFinds()
    {
        TelegramBook book;
        QByteArray capture = Head() + Numbered(0, 5000);
        book.Show(SourceOf(capture));
        QTRY_COMPARE(book.End(), 5000);
        QSignalSpy found(&book, &TelegramBook::Found), missed(&book, &TelegramBook::NotFound);
        const auto row = [&found] { return found.isEmpty() ? -1 : found.last()[0].toLongLong(); };
        book.Find({.bytes = "999"}, 999, true);
        QTRY_COMPARE(row(), 1999);
        book.Find({.bytes = "999"}, 999, false);
        QTRY_COMPARE(missed.size(), 1);
        book.Find({.bytes = "999"}, 4999, false);
        QTRY_COMPARE(row(), 3999);
        book.FindTime(Start + 123'401 * Millisecond);
        QTRY_COMPARE(row(), 1235);
        book.FindNumber(4000);
        QTRY_COMPARE(row(), 3999);
        TelegramBook::Totals totals;
        connect(&book, &TelegramBook::Summed, this, [&](const auto &sums) { totals = sums; });
        book.Sum(1000, 4999);
        QTRY_COMPARE(totals.bytes, 16'000);
        QVERIFY(totals.rows == 4000 && totals.apart == 399'900 * Millisecond);

        book.SetFilter({.contains = "99"});
        QTRY_VERIFY(IsIdle(book) && book.End() == 95 && book.CountOfAll() == 5000);
        QTRY_COMPARE(BytesOf(book, 2), "299");
        book.Find({.bytes = "0"}, 10, true);
        QTRY_COMPARE(row(), 19);
        QTRY_COMPARE(BytesOf(book, 19), "1099");
        book.Sum(0, 9); // 99 to 990
        QTRY_COMPARE(totals.bytes, 29);
        QVERIFY(totals.rows == 10 && totals.apart == 89'100 * Millisecond);
        book.FindTime(0);
        QTRY_COMPARE(row(), 0);
        book.FindNumber(5001);
        QTRY_COMPARE(row(), 94);
    }

    void GoesBackFromWhatIsUnderWay_data()
    {
        using Act = std::function<void(TelegramBook &)>;
        const Cases<Act, Progress::Work, Act> row("begin", "work", "goBack");
        const Act cancel = [](TelegramBook &book) { book.Cancel(); };
        const Act cut = [](TelegramBook &book) { book.SetRule({.fixedLength = 1}); };
        const Act filter = [](TelegramBook &book) { book.SetFilter({.contains = "9"}); };
        row("cutting by another rule", cut, Progress::Work::Cutting, cancel);
        row(
            "cutting by a second other rule",
            [cut](TelegramBook &book) {
                cut(book);
                book.SetRule({.fixedLength = 2});
            },
            Progress::Work::Cutting, cancel);
        row("a filter", filter, Progress::Work::Filtering, cancel);
        row("a filter that is taken off", filter, Progress::Work::Filtering,
            [](TelegramBook &book) { book.SetFilter({}); });
    }

    /// Even while the disk hangs: all rows are there again, by the rule before.
    void GoesBackFromWhatIsUnderWay()
    {
        QFETCH(std::function<void(TelegramBook &)>, begin);
        QFETCH(Progress::Work, work);
        QFETCH(std::function<void(TelegramBook &)>, goBack);
        constexpr int Count = 30'000;
        const auto file = std::make_shared<HangingFile>(Head() + Numbered(0, Count));
        TelegramBook book;
        book.Show(std::make_shared<CaptureSource>(file));
        QTRY_VERIFY(IsIdle(book) && book.End() == Count);
        file->SetHangs(true);
        begin(book);
        QTRY_VERIFY(book.End() > 100);
        QCOMPARE(book.Background().work, work);
        goBack(book);
        QTRY_COMPARE(book.End(), Count);
        QTRY_COMPARE(BytesOf(book, 77), "77");
        QVERIFY(IsIdle(book) && book.Rule() == TelegramRule() && book.Filter().IsEmpty());
        file->SetHangs(false);
        QTRY_COMPARE(BytesOf(book, Count - 1), QByteArray::number(Count - 1));
    }

    /// Cutting that is given up for the first time leaves what has been cut, a search nothing.
    void Cancels()
    {
        TelegramBook book;
        book.Show(std::make_shared<CaptureSource>(m_endless));
        QTRY_VERIFY(book.End() > 10'000);
        QCOMPARE(book.Background().work, Progress::Work::Cutting);
        book.Cancel();
        QTRY_VERIFY(IsIdle(book));
        const qint64 end = book.End();
        QTRY_COMPARE(BytesOf(book, 77), "77");

        book.Show(SourceOf(Head() + Numbered(0, 3)));
        QTRY_VERIFY(IsIdle(book) && book.End() == 3 && end > 3);
        book.Show(std::make_shared<CaptureSource>(m_endless));
        QSignalSpy missed(&book, &TelegramBook::NotFound);
        book.Find({.bytes = "never"}, 0, true);
        QCOMPARE(book.Background().work, Progress::Work::Searching);
        book.Cancel();
        QTRY_COMPARE(missed.size(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_telegrambook)
#include "tst_telegrambook.moc"
