// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "controls/RichTextModel.h"
#include "controls/RichTextSteps.h"
#include "controls/RichTextTyping.h"

#include <QSignalSpy>
#include <QTest>

namespace
{

constexpr TextStyle Plain{};
constexpr TextStyle Red{0x0000FF, true, false, false};
constexpr TextStyle Blue{0xFF0000, false, true, true};

/// The content with each run in brackets behind the letter of its style: "p[ab]r[c]".
QString Told(const RichTextModel &model)
{
    QString told;
    qint64 from = model.Begin();
    for (const RichTextModel::StyleRun &run : model.Runs()) {
        const char letter = run.style == Red ? 'r' : run.style == Blue ? 'b' : 'p';
        told += QLatin1Char(letter) + QStringLiteral("[") +
                QString::fromLatin1(model.Bytes().sliced(from - model.Begin(), run.end - from)) +
                u']';
        from = run.end;
    }
    return from == model.End() ? told : QStringLiteral("runs do not cover the content");
}

void Fill(RichTextModel &model, qsizetype length)
{
    model.SetText(QByteArray(length, 'x'), Plain);
}

} // namespace

class tst_RichTextModel : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AppendsMergeEqualStyles()
    {
        RichTextModel model;
        model.AppendStyled("ab", Red);
        model.AppendStyled("c", Red);
        model.AppendStyled("", Blue);
        model.AppendStyled("d", Plain);
        QCOMPARE(Told(model), QStringLiteral("r[abc]p[d]"));
        QCOMPARE(model.RunAt(2).style, Red);
        QCOMPARE(model.RunAt(3).style, Plain);
    }

    void AppendTrims_data()
    {
        QTest::addColumn<qsizetype>("before");
        QTest::addColumn<qsizetype>("appended");
        QTest::addColumn<qsizetype>("after");
        const auto row = [](const char *name, int before, int appended, int after) {
            QTest::newRow(name) << qsizetype(before) << qsizetype(appended) << qsizetype(after);
        };
        row("exactly the limit is kept whole", 127990, 10, 128000);
        row("one character more costs 2,048", 127991, 10, 125953);
        row("far beyond the limit it costs 2,048 all the same", 200000, 10, 197962);
        row("an empty append trims too", 128001, 0, 125953);
        row("the hard limit itself is not cut at once", 1048575, 1, 1046528);
        row("beyond the hard limit all but 128,000 are cut", 1048575, 2, 128000);
    }

    void AppendTrims()
    {
        QFETCH(qsizetype, before);
        QFETCH(qsizetype, appended);
        RichTextModel model;
        Fill(model, before);
        const qint64 end = model.End();
        model.AppendStyled(QByteArray(appended, 'y'), Red);
        QTEST(model.Length(), "after");
        QCOMPARE(model.End(), end + appended);
        QVERIFY(model.Bytes().endsWith(QByteArray(appended, 'y')));
    }

    void MoveTakesStylesAndEmptiesTheSource()
    {
        RichTextModel source;
        RichTextModel view;
        view.AppendStyled("a", Red);
        source.AppendStyled("b", Red);
        source.AppendStyled("c", Blue);
        view.MoveViewContent(source);
        QCOMPARE(Told(view), QStringLiteral("r[ab]b[c]"));
        QCOMPARE(source.Length(), 0);
        QCOMPARE(Told(source), QString());
        source.AppendStyled("d", Blue);
        view.MoveViewContent(source);
        QCOMPARE(Told(view), QStringLiteral("r[ab]b[cd]"));
    }

    void OnlyAMoveOfSomethingTrims()
    {
        RichTextModel source;
        RichTextModel view;
        Fill(view, 130000);
        QSignalSpy changed(&view, &RichTextModel::Changed);
        view.MoveViewContent(source);
        QCOMPARE(view.Length(), 130000);
        QCOMPARE(changed.count(), 0);
        source.AppendStyled("y", Plain);
        view.MoveViewContent(source);
        QCOMPARE(view.Length(), 130001 - 2048);
        QCOMPARE(changed.count(), 1);
    }

    void SelectionStaysOnItsCharacters()
    {
        RichTextModel model;
        model.AppendStyled(QByteArray(2000, 'a') + "0123456789" + QByteArray(126000, 'b'), Plain);
        QCOMPARE(model.Begin(), 2048);

        Fill(model, 0);
        model.AppendStyled(QByteArray(2046, 'a') + "0123456789" + QByteArray(125944, 'b'), Plain);
        model.Select(model.Begin() + 2050, model.Begin() + 2045);
        QCOMPARE(model.SelectedText().toByteArray(), QByteArray("a0123"));
        model.AppendStyled("c", Plain);
        QCOMPARE(model.SelectedText().toByteArray(), QByteArray("23"));
        QCOMPARE(model.Anchor(), model.Begin() + 2);
        QCOMPARE(model.Caret(), model.Begin());
        model.Select(-5, model.End() + 100);
        QCOMPARE(model.SelectedText().size(), model.Length());
    }

    void Find_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("pattern");
        QTest::addColumn<qint64>("from");
        QTest::addColumn<qint64>("found");
        const auto row = [](const char *name, QByteArray text, QByteArray pattern, int from,
                            int found) {
            QTest::newRow(name) << text << pattern << qint64(from) << qint64(found);
        };
        row("the first of two", "0D 0D 0D", "0D 0D", 0, 0);
        row("matches may overlap", "0D 0D 0D", "0D 0D", 1, 3);
        row("none after the last", "0D 0D 0D", "0D 0D", 4, -1);
        row("small letters find capitals", "xABCx", "abc", 0, 1);
        row("capitals find small letters", "x\xE4\xF6x", "\xC4\xD6", 0, 1);
        row("the sign of multiplication is no letter", "\xF7", "\xD7", 0, -1);
        row("a broken start of the pattern", "aabaabaaab", "aabaaab", 0, 3);
        row("at the very end", "abc", "c", 0, 2);
        row("longer than the text", "abc", "abcd", 0, -1);
        row("an empty pattern matches nothing", "abc", "", 0, -1);
        row("from before the begin", "abc", "a", -7, 0);
        row("from behind the end", "abc", "c", 9, -1);
        row("a zero byte", QByteArray("a\0b", 3), QByteArray("\0b", 2), 0, 1);
    }

    void Find()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, pattern);
        QFETCH(qint64, from);
        RichTextModel model;
        model.AppendStyled(text, Plain);
        QTEST(model.Find(pattern, from), "found");
    }

    void FindTellsPositionsBehindACut()
    {
        RichTextModel model;
        model.AppendStyled("needle" + QByteArray(128000, '.') + "Needle", Plain);
        QCOMPARE(model.Begin(), 2048);
        QCOMPARE(model.Find("needle", 0), 128006);
    }

    void Replace_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<TextStyle>("style");
        QTest::addColumn<QString>("told");
        const auto row = [](const char *name, int from, int to, const char *text, TextStyle style,
                            const char *told) {
            QTest::newRow(name) << from << to << QByteArray(text) << style
                                << QString::fromLatin1(told);
        };
        row("in the middle it splits a run", 1, 1, "X", Blue, "r[a]b[X]r[bc]p[def]");
        row("in the same style it joins the run", 1, 1, "X", Red, "r[aXbc]p[def]");
        row("between two runs it joins the earlier", 3, 3, "X", Red, "r[abcX]p[def]");
        row("between two runs it joins the later", 3, 3, "X", Plain, "r[abc]p[Xdef]");
        row("at the begin", 0, 0, "X", Blue, "b[X]r[abc]p[def]");
        row("at the end", 6, 6, "X", Blue, "r[abc]p[def]b[X]");
        row("over two runs", 2, 4, "XY", Blue, "r[ab]b[XY]p[ef]");
        row("a whole run goes", 0, 3, "", Plain, "p[def]");
        row("everything goes", 0, 6, "", Plain, "");
        row("ends beyond the content are moved to it", -3, 99, "X", Red, "r[X]");
        row("a backward range inserts at its start", 4, 2, "X", Blue, "r[abc]p[d]b[X]p[ef]");
    }

    void Replace()
    {
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(QByteArray, text);
        QFETCH(TextStyle, style);
        RichTextModel model;
        model.AppendStyled("abc", Red);
        model.AppendStyled("def", Plain);
        const quint64 revision = model.EditRevision();
        model.Replace(from, to, text, style);
        QTEST(Told(model), "told");
        QVERIFY(model.EditRevision() > revision);
        QCOMPARE(model.Caret(), qMax(from, 0) + text.size());
        QVERIFY(!model.HasSelection());
    }

    void TypingBeyondTheLimitTrims()
    {
        RichTextModel model;
        Fill(model, 128000);
        model.Replace(model.End(), model.End(), "y", Red);
        QCOMPARE(model.Length(), 125953);
        Fill(model, 130000);
        model.Replace(model.Begin(), model.Begin() + 1, {}, Plain);
        QCOMPARE(model.Length(), 129999);
    }

    void Steps()
    {
        RichTextModel model;
        model.AppendStyled("ab, c\r\n\r\nd", Plain);
        QCOMPARE(RichTextSteps::Next(model, 5), 7);
        QCOMPARE(RichTextSteps::Next(model, 6), 7);
        QCOMPARE(RichTextSteps::Previous(model, 7), 5);
        QCOMPARE(RichTextSteps::Previous(model, 6), 5);
        QCOMPARE(RichTextSteps::Previous(model, 0), 0);
        QCOMPARE(RichTextSteps::Next(model, 10), 10);
        QCOMPARE(RichTextSteps::NextWord(model, 0), 2);
        QCOMPARE(RichTextSteps::NextWord(model, 2), 4);
        QCOMPARE(RichTextSteps::NextWord(model, 5), 7);
        QCOMPARE(RichTextSteps::PreviousWord(model, 10), 9);
        QCOMPARE(RichTextSteps::PreviousWord(model, 9), 7);
        QCOMPARE(RichTextSteps::PreviousWord(model, 4), 2);
        QCOMPARE(RichTextSteps::WordAt(model, 1), (RichTextSteps::Span{0, 2}));
        QCOMPARE(RichTextSteps::WordAt(model, 5), (RichTextSteps::Span{4, 5}));
        QCOMPARE(RichTextSteps::WordAt(model, 7), (RichTextSteps::Span{7, 7}));
        QCOMPARE(RichTextSteps::LineAt(model, 6), (RichTextSteps::Span{0, 7}));
        QCOMPARE(RichTextSteps::LineAt(model, 7), (RichTextSteps::Span{7, 9}));
        QCOMPARE(RichTextSteps::LineAt(model, 10), (RichTextSteps::Span{9, 10}));
    }

    void TypingIsEncodedOrRefusedWhole()
    {
        RichTextModel model;
        model.AppendStyled("abc", Plain);
        model.Select(1, 2);
        QCOMPARE(RichTextTyping::Insert(model, u"x\u20AC", Red), QString());
        QCOMPARE(Told(model), QString::fromLatin1("p[a]r[x\x80]p[c]"));
        QCOMPARE(RichTextTyping::Insert(model, u"ok \u03A9 \u03B1", Red),
                 QStringLiteral("The character \u03A9 (U+03A9) is not in code page 1252."));
        QCOMPARE(RichTextTyping::Insert(model, u"\U0001F600", Red),
                 QStringLiteral("The character \U0001F600 (U+1F600) is not in code page 1252."));
        QCOMPARE(model.Length(), 4);
    }
};

QTEST_APPLESS_MAIN(tst_RichTextModel)
#include "tst_richtextmodel.moc"
