// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MdSequenceEdition.h"
#include "StepCommand.h"
#include "StepMaker.h"
#include "StepParser.h"
#include "StepRunner.h"
#include "support/Cases.h"

#include <QJsonObject>
#include <QRandomGenerator>
#include <QRegularExpression>

#include <functional>

namespace
{

constexpr qint64 Millisecond = 1000000;

/// A project in which one name stands for two sequences, and another one for two of a kind.
struct Tables : MdSequenceEdition {
    Tables()
    {
        for (const char *name : {"Ping", "Both", "Twice", "Twice"})
            AddSend({.Name = name, .Sequence = QByteArray(name).toUpper()});
        AddSend({.Name = "Empty"});
        AddReceive({.Name = "Pong", .Sequence = "PONG"});
        AddReceive({.Name = "Both", .Sequence = "both"});
        AddReceive({.Name = "say \"a\\b\"", .Sequence = "quoted"});
    }
};

/// The lines of a run: what is done to them is a text, and RTS is not to be had.
class Lines final : public StepActions
{
  public:
    Result Send(const QByteArray &bytes, const QByteArray &name) override
    {
        done << QString::fromLatin1(name.isEmpty() ? bytes : name);
        return {};
    }
    Result SetRTS(bool) override { return Failure{QStringLiteral("no such line")}; }
    Result SetDTR(bool on) override { return Note(on ? "DTR" : "dtr"); }
    Result SetBreak(bool on) override { return Note(on ? "BREAK" : "break"); }
    Result Open() override
    {
        opening();
        return Note("open");
    }
    Result Close() override { return Note("close"); }

    QStringList done;
    std::function<void()> opening = [] {};

  private:
    Result Note(const char *what)
    {
        done << QLatin1String(what);
        return {};
    }
};

/// Steps and what the lines say meanwhile, in scripted time.
struct Script {
    /// Steps with a ; between them.
    explicit Script(const QString &steps, bool goesOn = false)
        : runner(
              lines, [this](const StepOutcome &outcome) { Note(outcome); }, goesOn)
    {
        const StepMaker maker(tables, {.twoChannels = true});
        auto parsed = StepParser::FromFile(QString(steps).replace(';', '\n').toUtf8(), maker);
        if (goesOn && steps.isEmpty()) // they come one by one
            parsed = {};
        if (parsed.result.Failed())
            told << parsed.result.Cause();
        runner.Begin(std::move(parsed.program), 0);
        runner.Advance(0);
    }

    /// "10:OK 20:2:X": at 10 ms OK comes on channel 1, at 20 ms X on channel 2.
    void Play(const QString &traffic)
    {
        for (const QString &item : traffic.split(' ', Qt::SkipEmptyParts)) {
            const QStringList parts = item.split(':');
            TrafficEvent event;
            event.time.monotonic = qint64(parts[0].toDouble() * Millisecond);
            event.channel = parts.size() == 3 ? 1 : 0;
            event.bytes = parts.last().toLatin1();
            PassTo(event.time.monotonic);
            runner.Take(event);
        }
        PassTo(5000 * Millisecond);
        runner.Finish();
    }

    void PassTo(qint64 time)
    {
        while (runner.NextDeadline() < time)
            runner.Advance(runner.NextDeadline());
    }

    /// "+10" passed at 10 ms, "-10" failed, "?" was not run; each with the number of its line.
    void Note(const StepOutcome &outcome)
    {
        last = outcome;
        const QString line = QString::number(outcome.step.line);
        const QString time = QString::number(double(outcome.ended) / Millisecond);
        if (outcome.verdict == StepOutcome::Verdict::NotRun)
            told << line + '?';
        else
            told << line + (outcome.verdict == StepOutcome::Verdict::Passed ? '+' : '-') + time;
    }

    Tables tables;
    Lines lines;
    QStringList told;
    StepOutcome last;
    StepRunner runner;
};

} // namespace

class tst_steps : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void Run_data()
    {
        const Cases<QString, QString, QString> row("steps", "traffic", "told");
        row("an answer in time", "send Ping;expect Pong", "10:PO 20:NG", "1+0 2+20");
        row("no answer", "expect Pong within 50ms;send Ping", "", "1-50 2?");
        row("the last moment counts", "expect Pong within 50ms", "50:PONG", "1+50");
        row("a late answer", "expect Pong within 50ms", "40:PON 51:G", "1-50");
        row("what came before counts", "wait 100ms;expect Pong", "10:PONG", "1+100 2+100");
        row("once", "expect Pong;expect Pong within 30ms", "10:PONG", "1+10 2-40");
        row("a match ends where its bytes end", "expect text:A;expect text:B;expect text:C",
            "10:xAyBzC", "1+10 2+10 3+10");
        row("what stands before a match is over", "expect text:B;expect text:A within 9ms", "10:AB",
            "1+10 2-19");
        row("a match of its own bytes only", "expect text:AA;expect text:AA within 9ms", "10:AAA",
            "1+10 2-19");
        row("on the other line", "expect Pong on 2 within 50ms", "10:PONG 20:2:PONG", "1+20");
        row("any line", "expect Pong;expect Pong", "10:2:PO 20:PONG 30:2:NG", "1+20 2+30");
        row("each line has matches of its own", "expect text:A on 1;expect text:B on 2",
            "10:2:B 20:A", "1+20 2+20");
        row("a sequence is cut by reads, not by lines", "expect text:AB within 50ms",
            "10:A 20:2:B 30:B", "1+30");

        row("a forbidden one", "forbid text:ERR;expect Pong", "10:ER 20:R 30:PONG", "1+0 2-20");
        row("it wins over one that comes later", "forbid text:ERR;expect Pong", "10:ERRPONG",
            "1+0 2-10");
        row("and over one at the same byte",
            "forbid text:PON;forbid text:ONG;allow text:PON;"
            "expect Pong",
            "10:PONG", "1+0 2+0 3+0 4-10");
        row("not over one before it", "forbid text:E;expect text:A;allow text:E;expect text:B",
            "10:AEB", "1+0 2+10 3+10 4+10");
        row("allowed again", "forbid text:E;wait 9ms;allow text:E;expect text:B", "10:EB",
            "1+0 2+9 3+9 4+10");
        row("from here on", "wait 20ms;forbid text:E;expect text:B", "10:E 30:B", "1+20 2+20 3+30");
        row("here is behind the last match", "expect text:A;forbid text:E;expect text:B", "10:EAEB",
            "1+10 2+10 3-10");
        row("on one line", "forbid text:E on 2;expect text:B", "10:E 20:B", "1+0 2+20");
        row("behind the last step", "forbid text:E;expect text:A", "10:AE", "1+0 2+10 1-10");
        row("in a pause", "forbid text:E;wait 50ms;send Ping", "10:E", "1+0 2-10 3?");

        row("quiet", "quiet 50ms;expect text:A", "51:A", "1+50 2+51");
        row("not quiet", "quiet 50ms", "49:A", "1-49");
        row("quiet behind a match", "expect text:A;quiet 20ms", "10:A", "1+10 2+30");
        row("not quiet behind a match, in one read", "expect text:A;quiet 20ms", "10:AB",
            "1+10 2-10");
        row("quiet after a pause", "wait 20ms;quiet 20ms", "10:AB", "1+20 2+40");
        row("pauses add up", "wait 1.5s;wait 0.5s;wait 0ms", "700:A", "1+1500 2+2000 3+2000");

        row("repeat", "repeat 3;expect text:A;end;send Ping", "1:A 2:A 3:A", "2+1 2+2 2+3 4+3");
        row("repeat in repeat", "repeat 2;repeat 2;wait 1ms;end;wait 5ms;end", "",
            "3+1 3+2 5+7 3+8 3+9 5+14");
        row("a failure in a repeat", "repeat 2;expect text:A;expect text:B within 5ms;end;wait 1s",
            "1:AB 2:A", "2+1 3+1 2+2 3-7 5?");
        row("a line without modem lines", "dtr on;rts on;dtr off", "", "1+0 2-0 3?");
        row("a break", "break 100ms", "", "1+100");
        row("comments and blanks", "# no;;  send Ping  # yes", "", "3+0");
    }

    void Run()
    {
        QFETCH(QString, steps);
        QFETCH(QString, traffic);
        Script script(steps);
        script.Play(traffic);
        QTEST(script.told.join(' '), "told");
    }

    void WhatIsDoneToTheLines()
    {
        Script script(
            "send Ping;send-hex \"01 0a\";dtr off;break 5ms;close;open;send-text \"A\\n\"");
        script.Play({});
        QCOMPARE(script.lines.done,
                 QStringList({"Ping", "\x01\n", "dtr", "BREAK", "break", "close", "open", "A\n"}));
        Script stopped("break 1s;wait 1s");
        stopped.runner.Stop("a signal");
        QCOMPARE(stopped.lines.done, QStringList({"BREAK", "break"}));
        QCOMPARE(stopped.told.join(' '), "1-0 2?");
    }

    /// What stands behind an opening begins when it is over.
    void AnOpeningThatTakesLong()
    {
        Script script("wait 1ms;open;expect text:A within 5ms;wait 2ms");
        script.lines.opening = [&script] { script.runner.NoteTime(100 * Millisecond); };
        script.Play("104:A");
        QCOMPARE(script.told.join(' '), "1+1 2+100 3+104 4+106");
    }

    void WhatIsTold()
    {
        Script script("forbid text:E;expect text:A;expect Pong within 9ms");
        script.Play("10:xAhallo");
        QCOMPARE(script.last.heard, "hallo");
        QCOMPARE(script.last.began, 10 * Millisecond);
        QCOMPARE(script.last.cause, "it did not come in time");
        Script forbidden("forbid text:E;wait 9ms");
        forbidden.Play("1:xE");
        QCOMPARE(forbidden.last.cause, "what must not come has come: forbid text:E (line 1)");
    }

    void ARunnerThatGoesOn()
    {
        Script script("forbid text:E;expect text:A within 5ms;wait 1ms", true);
        script.Play("7:E 8:E");
        QCOMPARE(script.told.join(' '), "1+0 2-5 3+6 1-7 1-8");
        StepCommand late =
            ReadStepCommand(R"({"step":"wait","what":"2ms"})", StepMaker(script.tables, {}));
        Script added({}, true);
        added.runner.Add(late.step, 0);
        added.PassTo(10 * Millisecond);
        added.runner.Add(late.step, 10 * Millisecond);
        added.PassTo(20 * Millisecond);
        QCOMPARE(added.told.join(' '), "0+2 0+12");
    }

    void ManyStepsLetOthersLook()
    {
        Script script("repeat 1000000000;send-hex 00;end");
        QCOMPARE(script.lines.done.size(), StepRunner::MostStepsAtOnce / 2);
        QCOMPARE(script.runner.NextDeadline(), 0);
    }

    void MuchIsHeard()
    {
        Script script("wait 1s;expect text:END;expect text:B within 1ms");
        TrafficEvent event;
        event.bytes = QByteArray(TrafficEvent::MostBytesOfAChunk, 'A');
        for (int i = 0; i < 20000; ++i)
            script.runner.Take(event);
        script.Play("900:END");
        QCOMPARE(script.told.join(' '), "1+1000 2+1000 3-1001");
    }

    void Wrong_data()
    {
        const Cases<QString, QString> row("steps", "cause");
        row("no steps", "", "line 1: there are no steps");
        row("none that could fail", "group a;repeat 2;end # wait 1s", "line 1: there are no steps");
        row("no verb", "wait 1ms;sned Ping", "line 2: \"sned\" is no step");
        row("an unknown name", "send Pang", "line 1: the project has no send sequence named");
        row("a receive sequence sent", "send Pong", "no send sequence named \"Pong\"");
        row("an ambiguous name", "expect Both",
            "line 1: \"Both\" is a send and a receive sequence: send:Both or receive:Both");
        row("two of a name", "expect Twice", "there are 2 sequences of the name \"Twice\"");
        row("no bytes", "expect Empty", "the sequence \"Empty\" has no bytes");
        row("no bytes written", "expect hex:", "there are no bytes");
        row("half a byte", "send-hex 0", "pairs of hexadecimal digits");
        row("an escape that is none", "send-text \\q", "\"\\q\" is none of");
        row("a foreign character", "send-text \xE2\x82\xBF", "code page 1252");
        row("an open quote", "send \"Ping", "line 1: a quote is not closed");
        row("too much", "send Ping Pong", "line 1: \"Pong\" is too much");
        row("nothing behind", "expect", "expect needs something behind it");
        row("no limit", "expect Pong within", "within needs a value");
        row("a limit without a unit", "expect Pong within 500", "\"500\" is no time");
        row("a limit twice", "expect Pong within 1s within 2s", "stands there twice");
        row("a limit of a pause", "wait 1s within 2s", "\"within\" is too much");
        row("a negative time", "wait -1s", "is no time");
        row("an endless time", "wait infs", "is no time");
        row("channel 3", "expect Pong on 3", "\"3\" is no channel");
        row("neither on nor off", "rts up", "neither on nor off");
        row("no repeats", "repeat 0;end", "no number of times");
        row("an end alone", "end", "line 1: there is no repeat");
        row("a repeat without an end", "wait 1s;repeat 2;wait 1s", "line 2: the repeat has no end");
        row("nine deep", QString("repeat 2;").repeated(9) + QString("end;").repeated(9),
            "line 9: repeat nests 8 deep at most");
    }

    void Wrong()
    {
        QFETCH(QString, steps);
        QFETCH(QString, cause);
        const QString told = Script(steps).told.join(' ');
        QVERIFY2(told.contains(cause), qPrintable(told));
    }

    void WhatAModeForbids()
    {
        const Tables tables;
        const auto cause = [&tables](const QByteArray &steps, const StepRules &rules) {
            return StepParser::FromFile(steps, StepMaker(tables, rules)).result.Cause();
        };
        QCOMPARE(cause("send Ping", {.maySend = false}), "line 1: nothing is sent in mode 1");
        QCOMPARE(cause("expect Pong on 2", {}), "line 1: there is no channel 2 in mode 0");
        QVERIFY(cause("expect \xFF", {}).startsWith("line 1: the line is no text in UTF-8"));
        QVERIFY(cause(QByteArray("wait 1s\n\0", 9), {}).startsWith("line 2"));
    }

    void Arguments_data()
    {
        const Cases<QStringList, QString> row("arguments", "steps");
        row("word by word", {"send", "Ping", "expect", "Pong", "within", "5ms", "close"},
            "send Ping|expect Pong within 5ms|close");
        row("a step in one", {"send Ping", "expect text:\"a b\" on 1"},
            "send Ping|expect text:\"a b\" on 1");
        row("a name as the shell gives it", {"expect", "say \"a\\b\""}, "expect \"say \"a\\b\"\"");
        row("and in quotes of its own", {"expect \"say \\\"a\\\\b\\\"\""},
            "expect \"say \\\"a\\\\b\\\"\"");
        row("the second one is wrong", {"send", "Ping", "send"},
            "step 2: send needs something behind it");
    }

    void Arguments()
    {
        QFETCH(QStringList, arguments);
        const Tables tables;
        const auto parsed = StepParser::FromArguments(arguments, StepMaker(tables, {}));
        QStringList steps;
        for (const Step &step : parsed.program.steps)
            steps << step.text;
        QTEST(parsed.result.Failed() ? parsed.result.Cause() : steps.join('|'), "steps");
    }

    /// Whatever one character is damaged to, a file is read, or refused with the line at fault.
    void DamagedFiles()
    {
        const QByteArray good = "send Ping\nrepeat 3\n  expect Pong within 50ms # now\n"
                                "  forbid hex:\"15 00\"\nend\nquiet 20ms\nsend-text \"a\\r\"\n";
        const Tables tables;
        QRandomGenerator random(1);
        int refused = 0;
        for (int i = 0; i < 1000; ++i) {
            QByteArray damaged = good;
            damaged[random.bounded(damaged.size())] = char(random.bounded(256));
            const auto parsed = StepParser::FromFile(damaged, StepMaker(tables, {}));
            if (!parsed.result.Failed())
                continue;
            ++refused;
            static const QRegularExpression line("^line [1-8]: .+");
            QVERIFY2(line.match(parsed.result.Cause()).hasMatch(), damaged.constData());
        }
        QVERIFY(refused > 500);
    }

    void Commands_data()
    {
        const Cases<QByteArray, QString> row("line", "read");
        row("a step", R"({"step":"expect","what":"Pong","on":1,"within":"5ms","id":[7]})",
            "expect Pong on 1 within 5ms");
        row("in a group", R"({"step":"wait","what":"1ms","group":"A"})", "A: wait 1ms");
        row("a name as it is", "{\"step\":\"expect\",\"what\":\"say \\\"a\\\\b\\\"\"}",
            "expect say \"a\\b\"");
        row("no object", "[1]", "the line is no JSON object");
        row("no JSON", "{", "the line is no JSON: ");
        row("no step", "{}", "there is no \"step\"");
        row("another key", R"({"step":"close","name":"x"})", "\"name\" means nothing here");
        row("a value of another kind", R"({"step":["close"]})", "\"step\" is neither");
        row("a repeat", R"({"step":"repeat","what":3})", "repeat is no command");
        row("a group alone", R"({"step":"group","what":"A"})", "group is no command");
        row("a wrong step", R"({"step":"wait"})", "wait needs something behind it");
    }

    void Commands()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, read);
        const Tables tables;
        const StepCommand command = ReadStepCommand(line, StepMaker(tables, {}));
        QString told = command.result.Failed() ? command.result.Cause() : command.step.text;
        if (!command.result.Failed() && !command.step.group.isEmpty())
            told.prepend(command.step.group + ": ");
        QVERIFY2(told.startsWith(read), qPrintable(told));
        QCOMPARE(command.id.isArray(), line.contains("[7]"));
    }
};

QTEST_GUILESS_MAIN(tst_steps)
#include "tst_steps.moc"
