// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramDetails.h"
#include "TelegramDump.h"
#include "TelegramHeader.h"
#include "TelegramList.h"
#include "TelegramRows.h"

#include <QAccessible>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>

namespace
{

constexpr qint64 Milli = 1'000'000;

/// Any number of telegrams, which are made when they are asked for: one every 10 ms, in turns of
/// both directions, with their number as bytes.
class ManyRows final : public TelegramRows
{
  public:
    qint64 first = 0;
    qint64 end = 0;
    QList<qint64> away; ///< rows that are not at hand

    qint64 First() const override { return first; }
    qint64 End() const override { return end; }
    qint64 CountOfAll() const override { return end - first; }
    const Telegram *Row(qint64 row) override
    {
        if (away.contains(row))
            return nullptr;
        Telegram telegram;
        telegram.number = row + 1;
        telegram.direction = int(row % 2);
        telegram.kind = row % 2 == 0 ? TrafficEvent::Kind::Sent : TrafficEvent::Kind::Received;
        telegram.time = telegram.end = row * 10 * Milli;
        telegram.bytes = QByteArray::number(row);
        telegram.reads = {{telegram.time, 0}};
        telegram.response = row % 2 == 1 ? 1'234'567 : -1;
        return &(m_made[row] = telegram);
    }
    void Grow(qint64 by)
    {
        end += by;
        Q_EMIT Changed();
    }
    void Forget(qint64 to)
    {
        first = to;
        Q_EMIT Changed();
    }

  private:
    QHash<qint64, Telegram> m_made;
};

struct Keys {
    QList<QKeyCombination> keys;
    qint64 current;
    QList<TelegramSelection::Range> chosen;
};

} // namespace

Q_DECLARE_METATYPE(Keys)

class tst_telegramlist : public QObject
{
    Q_OBJECT

  private:
    ManyRows m_rows;
    std::unique_ptr<TelegramList> m_list;

    void Show(qint64 count)
    {
        m_rows.first = 0;
        m_rows.end = count;
        m_rows.away.clear();
        m_list = std::make_unique<TelegramList>();
        m_list->Show(&m_rows);
        m_list->resize(1000, 400);
        m_list->show();
        m_list->activateWindow();
        m_list->setFocus();
        QVERIFY(QTest::qWaitForWindowActive(m_list.get()));
    }
    qint64 Top() const { return m_rows.first + m_list->SeenRows().first; }
    qint64 Bottom() const { return Top() + m_list->SeenRows().count - 1; }

  private Q_SLOTS:
    void selectsByKeys_data();
    void selectsByKeys();
    void followsTheEnd();
    void reachesEveryRow();
    void tellsDifferences_data();
    void tellsDifferences();
    void fetchedRowsAreTold();
    void remembersColumns();
    void tellsAssistivePrograms();
    void showsDetails();
};

void tst_telegramlist::selectsByKeys_data()
{
    QTest::addColumn<Keys>("keys");
    using Qt::CTRL;
    using Qt::SHIFT;
    QTest::newRow("home") << Keys{{Qt::Key_Home}, 0, {{0, 0}}};
    QTest::newRow("end") << Keys{{Qt::Key_End}, 99, {{99, 99}}};
    QTest::newRow("a range") << Keys{
        {Qt::Key_Home, Qt::Key_Down, SHIFT | Qt::Key_Down, SHIFT | Qt::Key_Down}, 3, {{1, 3}}};
    QTest::newRow("a range that turns round")
        << Keys{{Qt::Key_Home, Qt::Key_Down, Qt::Key_Down, SHIFT | Qt::Key_Down, SHIFT | Qt::Key_Up,
                 SHIFT | Qt::Key_Up},
                1,
                {{1, 2}}};
    QTest::newRow("one more, by Ctrl and the space bar")
        << Keys{{Qt::Key_Home, CTRL | Qt::Key_Down, CTRL | Qt::Key_Down, CTRL | Qt::Key_Space},
                2,
                {{0, 0}, {2, 2}}};
    QTest::newRow("one less") << Keys{{Qt::Key_Home, SHIFT | Qt::Key_Down, SHIFT | Qt::Key_Down,
                                       CTRL | Qt::Key_Up, CTRL | Qt::Key_Space},
                                      1,
                                      {{0, 0}, {2, 2}}};
    QTest::newRow("all") << Keys{{Qt::Key_Home, CTRL | Qt::Key_A}, 0, {{0, 99}}};
}

void tst_telegramlist::selectsByKeys()
{
    QFETCH(const Keys, keys);
    Show(100);
    for (const QKeyCombination key : keys.keys)
        QTest::keyClick(m_list.get(), key.key(), key.keyboardModifiers());
    QCOMPARE(m_list->Current(), keys.current);
    QCOMPARE(m_list->Selection().Ranges(), keys.chosen);
    QVERIFY(m_list->Current() >= Top() && m_list->Current() <= Bottom());
}

void tst_telegramlist::followsTheEnd()
{
    Show(1000);
    QCOMPARE(Bottom(), 999);
    m_rows.Grow(50);
    QCOMPARE(Bottom(), 1049);

    QTest::keyClick(m_list.get(), Qt::Key_PageUp);
    const qint64 top = Top();
    m_rows.Grow(50);
    QCOMPARE(Top(), top);
    m_rows.Forget(500);
    QCOMPARE(Top(), top);
    m_list->GoTo(700);
    QCOMPARE(m_list->Current(), 700);
    m_rows.Forget(900); // what is looked at has gone
    QCOMPARE(Top(), 900);
    QCOMPARE(m_list->Current(), -1);
    QVERIFY(m_list->Selection().IsEmpty());

    m_list->verticalScrollBar()->setValue(m_list->verticalScrollBar()->maximum());
    m_rows.Grow(1);
    QCOMPARE(Bottom(), 1100);
}

/// The scroll bar counts in an int and has a few hundred pixels.
void tst_telegramlist::reachesEveryRow()
{
    constexpr qint64 Many = 10'000'000'000;
    Show(Many);
    QCOMPARE(Bottom(), Many - 1);
    m_list->verticalScrollBar()->setValue(0);
    QCOMPARE(Top(), 0);
    m_list->verticalScrollBar()->setValue(m_list->verticalScrollBar()->maximum() / 2);
    QVERIFY(qAbs(Top() - Many / 2) < Many / 1000);
    m_list->GoTo(1'234'567'891);
    QCOMPARE(m_list->Current(), 1'234'567'891);
    QTest::keyClick(m_list.get(), Qt::Key_Down);
    QCOMPARE(m_list->Texts(m_list->Current()).first(), QStringLiteral("1234567893"));
    QTest::keyClick(m_list.get(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(m_list->Selection().Count(), Many);
}

void tst_telegramlist::tellsDifferences_data()
{
    QTest::addColumn<TelegramBase>("base");
    QTest::addColumn<QString>("text");
    QTest::newRow("to the row before") << TelegramBase::RowBefore << "10.000";
    QTest::newRow("to the same direction") << TelegramBase::SameDirection << "20.000";
    QTest::newRow("since the marked row") << TelegramBase::MarkedRow << "30.000";
}

void tst_telegramlist::tellsDifferences()
{
    QFETCH(const TelegramBase, base);
    QFETCH(const QString, text);
    Show(100);
    m_list->GoTo(5);
    m_list->SetBase(base);
    QCOMPARE(m_list->CellText(8, int(TelegramColumn::Difference)), text);
    if (base != TelegramBase::MarkedRow)
        QCOMPARE(m_list->CellText(0, int(TelegramColumn::Difference)), QString());
    QCOMPARE(m_list->CellText(5, int(TelegramColumn::Response)), QStringLiteral("1.234"));
}

void tst_telegramlist::fetchedRowsAreTold()
{
    Show(100);
    m_rows.away = {3};
    QSignalSpy told(m_list.get(), &TelegramList::CurrentChanged);
    m_list->GoTo(3);
    QCOMPARE(m_list->CellText(3, 0), QString());
    m_rows.away.clear();
    Q_EMIT m_rows.Fetched();
    QCOMPARE(told.size(), 2);
    QCOMPARE(m_list->CellText(3, 0), QStringLiteral("4"));
}

void tst_telegramlist::remembersColumns()
{
    Show(10);
    TelegramHeader &header = m_list->Header();
    header.Columns()[int(TelegramColumn::Name)]->trigger();
    header.resizeSection(int(TelegramColumn::Port), 123);
    const TelegramColumns::Widths stored = header.StoredWidths();
    QCOMPARE(stored[size_t(TelegramColumn::Name)], 0);
    QCOMPARE(stored[size_t(TelegramColumn::Port)], 123);
    QCOMPARE(stored[size_t(TelegramColumn::Hex)], TelegramColumns::FreeWidth);

    Show(10);
    m_list->Header().SetWidths(stored);
    QVERIFY(m_list->Header().isSectionHidden(int(TelegramColumn::Name)));
    QCOMPARE(m_list->Header().sectionSize(int(TelegramColumn::Port)), 123);
    QCOMPARE(m_list->Header().length(), m_list->viewport()->width());
    for (QAction *column : m_list->Header().Columns()) {
        if (column->isChecked())
            column->trigger();
    }
    QVERIFY(m_list->Header().length() > 0); // the last one stays
}

void tst_telegramlist::tellsAssistivePrograms()
{
    Show(10'000'000);
    QAccessibleInterface *table = QAccessible::queryAccessibleInterface(m_list.get());
    QVERIFY(table && table->role() == QAccessible::Table);
    const qint64 children = (m_list->SeenRows().count + 1) * TelegramColumnCount;
    QCOMPARE(table->childCount(), int(children));
    QCOMPARE(table->tableInterface()->rowCount(), 10'000'000);
    QCOMPARE(table->child(int(TelegramColumn::Hex))->text(QAccessible::Name),
             QStringLiteral("HEX"));

    m_list->GoTo(77);
    QAccessibleInterface *cell = table->tableInterface()->cellAt(77, int(TelegramColumn::Text));
    QCOMPARE(cell->text(QAccessible::Name), QStringLiteral("77"));
    QVERIFY(cell->state().selected && cell->state().focused && !cell->state().offscreen);
    QCOMPARE(table->child(table->indexOfChild(cell)), cell);
    QCOMPARE(table->childAt(cell->rect().center().x(), cell->rect().center().y()), cell);
    QVERIFY(table->tableInterface()->cellAt(9'000'000, 0)->state().offscreen);
    QVERIFY(table->tableInterface()->selectRow(80));
    QCOMPARE(m_list->Current(), 80);
}

void tst_telegramlist::showsDetails()
{
    Telegram telegram;
    telegram.number = 7;
    telegram.bytes = QByteArray::fromHex("0103004142FF0D0A7A");
    telegram.reads = {{5 * Milli, 0}, {6 * Milli, 3}, {7 * Milli, 8}};
    telegram.time = 5 * Milli;
    telegram.end = 7 * Milli;
    TelegramDetails details;
    details.Show(telegram, {});
    details.resize(1200, 200);
    details.show();
    TelegramDump &dump = details.Dump();
    QStringList first, second;
    for (int column = 0; column < dump.Headings().size(); ++column) {
        first += dump.CellText(0, column);
        second += dump.CellText(1, column);
    }
    const QString binary =
        QStringLiteral("00000001 00000011 00000000 01000001 01000010 11111111 00001101 00001010");
    QCOMPARE(first, QStringList({"00000", "01 03 00 41 42 FF 0D 0A",
                                 QString::fromUtf8("\u2401\u2403\u2400AB\u00FF\u240D\u240A"),
                                 "001 003 000 065 066 255 013 010", binary, "+0.000  +1.000"}));
    QCOMPARE(second, QStringList({"00008", "7A", "z", "122", "01111010", "+2.000"}));

    QTest::keyClick(&dump, Qt::Key_Right);
    QTest::keyClick(&dump, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(dump.ChosenBytes().toHex(), QByteArray("0300"));
    QTest::keyClick(&dump, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(dump.Copy(TelegramDump::Form::Hex), QStringLiteral("01 03 00 41 42 FF 0D 0A 7A"));
}

QTEST_MAIN(tst_telegramlist)
#include "tst_telegramlist.moc"
