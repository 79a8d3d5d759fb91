// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "RichTextModel.h"
#include "RichTextSteps.h"
#include "support/Cases.h"

#include <QSignalSpy>

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

} // namespace

class tst_RichTextModel : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AppendTrims()
    {
        const struct {
            qsizetype before, appended, after;
        } lengths[] = {
            {127990, 10, 128000},  // exactly the limit is kept whole
            {127991, 10, 125953},  // one character more costs 2,048
            {200000, 10, 197962},  // far beyond the limit it costs 2,048 all the same
            {128001, 0, 125953},   // an empty append trims too
            {1048575, 1, 1046528}, // the hard limit itself is not cut at once
            {1048575, 2, 128000},  // beyond it all but 128,000 are cut
        };
        for (const auto &[before, appended, after] : lengths) {
            RichTextModel model;
            model.SetText(QByteArray(before, 'x'), Plain);
            const qint64 end = model.End();
            model.AppendStyled(QByteArray(appended, 'y'), Red);
            QCOMPARE(model.Length(), after);
            QCOMPARE(model.End(), end + appended);
            QVERIFY(model.Bytes().endsWith(QByteArray(appended, 'y')));
        }
    }

    void MoveTakesStylesAndTrims()
    {
        RichTextModel source, view;
        view.SetText(QByteArray(130000, 'x'), Plain);
        const QSignalSpy changed(&view, &RichTextModel::Changed);
        view.MoveViewContent(source); // of nothing changes nothing
        QCOMPARE(view.Length(), 130000);
        QCOMPARE(changed.count(), 0);
        source.AppendStyled("b", Plain);
        source.AppendStyled("", Red);
        source.AppendStyled("c", Blue);
        view.MoveViewContent(source);
        QCOMPARE(Told(source), "");
        source.AppendStyled("d", Blue);
        view.MoveViewContent(source);
        QCOMPARE(Told(view), "p[" + QString(130000 - 2048, u'x') + "b]b[cd]");
        QCOMPARE(changed.count(), 2);

        const qint64 end = view.End();
        source.SetText(QByteArray(RichTextModel::HardLimit - 1, 'x'), Red);
        source.Extend("y", Blue);
        view.MoveViewContent(source); // a burst, of which most goes at once
        QCOMPARE(Told(view), "r[" + QString(127999, u'x') + "]b[y]");
        QCOMPARE(view.End(), end + RichTextModel::HardLimit);
        QCOMPARE(view.Caret(), view.Begin());
    }

    void ZerosStayWithTheirCharacters()
    {
        RichTextModel source, view;
        const auto told = [&view] {
            QByteArray text = view.Bytes().toByteArray();
            for (qsizetype i = 0; i < text.size(); ++i)
                text[i] = view.StandsForZero(view.Begin() + i) ? '0' : text[i];
            return text;
        };
        view.AppendStyled("x", Plain);
        for (int i = 0; i < 2; ++i) {
            source.Extend("a\x81\x81", Plain);
            source.NoteZeros({"a\0\x81", 3});
            view.MoveViewContent(source);
        }
        QCOMPARE(told(), "xa0\x81"
                         "a0\x81");
        view.Replace(view.Begin() + 1, view.Begin() + 2, "yy", Plain);
        QCOMPARE(told(), "xyy0\x81"
                         "a0\x81");
        view.Replace(view.Begin() + 3, view.Begin() + 5, {}, Plain);
        QCOMPARE(told(), "xyya0\x81");
        view.KeepLast(2);
        QCOMPARE(told(), "0\x81");
        view.SetText("\x81", Plain);
        QCOMPARE(told(), "\x81");
    }

    void SelectionStaysOnItsCharacters()
    {
        RichTextModel model;
        model.AppendStyled(QByteArray(2046, 'a') + "0123456789" + QByteArray(125944, 'b'), Plain);
        model.Select(2050, 2045);
        QCOMPARE(model.SelectedText().toByteArray(), "a0123");
        model.AppendStyled("c", Plain);
        QCOMPARE(model.SelectedText().toByteArray(), "23");
        QCOMPARE(model.Anchor(), 2050);
        QCOMPARE(model.Caret(), 2048);
        model.Select(-5, model.End() + 100);
        QCOMPARE(model.SelectedText().size(), model.Length());
    }

    void Find_data()
    {
        const Cases<QByteArray, QByteArray, qint64, qint64> row("text", "pattern", "from", "found");
        row("matches may overlap", "0D 0D 0D", "0D 0D", 1, 3);
        row("none after the last", "0D 0D 0D", "0D 0D", 4, -1);
        row("small letters find capitals", "xABCx", "abc", 0, 1);
        row("capitals find small letters", "x\xE4\xF6x", "\xC4\xD6", 0, 1);
        row("a broken start of the pattern", "aabaaabaaac", "aabaaac", 0, 4);
        row("longer than the text", "abc", "abcd", 0, -1);
        row("an empty pattern matches nothing", "abc", "", 0, -1);
        row("from before the begin", "abc", "a", -7, 0);
        row("from behind the end", "abc", "c", 9, -1);
        row("a zero byte", QByteArray("a\0b", 3), QByteArray("\0b", 2), 0, 1);
        row("behind a cut", "needle" + QByteArray(128000, '.') + "Needle", "needle", 0, 128006);
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

    void Replace_data()
    {
        const Cases<int, int, QByteArray, TextStyle, QString> row("from", "to", "text", "style",
                                                                  "told");
        row("in the middle it splits a run", 1, 1, "X", Blue, "r[a]b[X]r[bc]p[def]");
        row("between two runs it joins the earlier", 3, 3, "X", Red, "r[abcX]p[def]");
        row("between two runs it joins the later", 3, 3, "X", Plain, "r[abc]p[Xdef]");
        row("at the begin", 0, 0, "X", Blue, "b[X]r[abc]p[def]");
        row("over two runs", 2, 4, "XY", Blue, "r[ab]b[XY]p[ef]");
        row("a whole run goes", 0, 3, "", Plain, "p[def]");
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
        model.SetText(QByteArray(128000, 'x'), Plain);
        model.Replace(model.End(), model.End(), "y", Red);
        QCOMPARE(model.Length(), 125953);
        model.SetText(QByteArray(130000, 'x'), Plain);
        model.Replace(model.Begin(), model.Begin() + 1, {}, Plain);
        QCOMPARE(model.Length(), 129999);
    }

    void Steps()
    {
        using namespace RichTextSteps;
        RichTextModel model;
        model.AppendStyled("ab, c\r\n\r\nd", Plain);
        const auto steps = [&model](auto step) {
            QList<qint64> all;
            for (qint64 from = 0; from <= 10; ++from)
                all << step(model, from);
            return all;
        };
        QCOMPARE(steps(Next), (QList<qint64>{1, 2, 3, 4, 5, 7, 7, 9, 9, 10, 10}));
        QCOMPARE(steps(Previous), (QList<qint64>{0, 0, 1, 2, 3, 4, 5, 5, 7, 7, 9}));
        QCOMPARE(steps(NextWord), (QList<qint64>{2, 2, 4, 4, 5, 7, 7, 9, 9, 10, 10}));
        QCOMPARE(steps(PreviousWord), (QList<qint64>{0, 0, 0, 2, 2, 4, 5, 5, 7, 7, 9}));
        QCOMPARE(WordAt(model, 1), (Span{0, 2}));
        QCOMPARE(WordAt(model, 5), (Span{4, 5}));
        QCOMPARE(WordAt(model, 7), (Span{7, 7}));
        QCOMPARE(LineAt(model, 6), (Span{0, 7}));
        QCOMPARE(LineAt(model, 7), (Span{7, 9}));
        QCOMPARE(LineAt(model, 10), (Span{9, 10}));
    }
};

QTEST_APPLESS_MAIN(tst_RichTextModel)
#include "tst_richtextmodel.moc"
