// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "MdPrint.h"
#include "MdSequenceEdition.h"
#include "OpenFiles.h"
#include "PrintSettings.h"
#include "ProjectState.h"
#include "QtPrintOutput.h"
#include "SequenceSettings.h"
#include "SystemFiles.h"
#include "support/Cases.h"
#include "support/FixedClock.h"
#include "support/ProgramBench.h"
#include "support/RecordingPrinter.h"
#include "support/ScriptedDisk.h"
#include "support/ScriptedPrompts.h"

#include <QAction>
#include <QImage>
#include <QPrinter>
#include <QProcess>
#include <QTemporaryDir>

namespace
{

/// The cause is in the details.
MessagePrompt PrintingFailed(const QString &cause)
{
    return CriticalMessage("Error while printing", cause);
}

/// The print commands with a project, onto the given output.
class PrintBench
{
  public:
    ProjectState project;
    DisplaySettings display;
    SequenceSettings form;
    PrintSettings settings;
    MdSequenceEdition tables;
    CommunicationViews views;
    ScriptedPrompts prompts;
    FixedClock clock;
    QString pointer; ///< "on" and "off" of the hourglass
    MdPrint print;

    explicit PrintBench(PrintOutput &output)
        : print({project, display, form, tables, views, settings, prompts, clock, output,
                 [this](bool busy) { pointer += busy ? "on " : "off "; }})
    {
        form.Display = qint16(Representation::Hex);
        prompts.whileStanding = [this] { pointer += "box "; };
        prompts.printer = PrinterChoice{};
    }

    void AddSend(const QByteArray &name, const QByteArray &sequence)
    {
        tables.AddSend({name, sequence, {}});
    }
    void AddReceive(const ReceiveSequence &record) { tables.AddReceive(record); }
    RichTextModel &View(Representation r = Representation::Ascii) { return views.View(r); }
};

/// The same onto the system's printers and files, with a folder of its own.
class SystemBench
{
  public:
    QTemporaryDir folder;
    SystemFiles system;
    OpenFiles files{system};
    QtPrintOutput output{files};
    PrintBench bench{output};

    QString Path(const QString &name) const { return folder.filePath(name); }
};

/// A recording page on which nothing wraps or breaks.
RecordingOutput LargePaper()
{
    RecordingOutput output;
    output.scaleWidth = 1e6F;
    output.scaleHeight = 1e6F;
    return output;
}

/// What a program of the system says about a PDF file.
QString Ask(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished())
        return process.errorString();
    return QString::fromUtf8(process.readAllStandardOutput());
}

int PagesOf(const QString &path)
{
    return Ask("pdfinfo", {path}).section("Pages:", 1).section('\n', 0, 0).toInt();
}

/// The lines with text, page by page.
QStringList TextOf(const QString &path)
{
    return Ask("pdftotext", {"-layout", path, "-"}).split('\n', Qt::SkipEmptyParts);
}

/// The first page as it looks, without colours in between.
QImage PictureOf(const QString &path)
{
    QStringList arguments = QString("-singlefile -png -r 150 -W 600 -H 200 -aa no").split(' ');
    Ask("pdftoppm", arguments << path << path);
    return QImage(path + ".png");
}

/// How many dots there are of each colour.
QHash<QRgb, int> DotsOf(const QImage &picture)
{
    QHash<QRgb, int> dots;
    for (int i = 0; i < picture.width() * picture.height(); ++i)
        ++dots[picture.pixel(i % picture.width(), i / picture.width())];
    return dots;
}

} // namespace

class tst_print : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AProjectIsPrintedLineByLine_data();
    void AProjectIsPrintedLineByLine();
    void SequencesAreInTheFormOfTheLists();
    void CopiesAreOneJobOfPages();
    void NothingIsPrintedWithoutAPrinter();
    void AFailureThrowsTheProjectAway_data();
    void AFailureThrowsTheProjectAway();
    void TheShownViewIsPrinted_data();
    void TheShownViewIsPrinted();
    void PdfsAreProposedBesideTheProject_data();
    void PdfsAreProposedBesideTheProject();
    void ALongTextIsCancelled();
    void TheWindowPrints();
    void PdfOfAProject();
    void PdfOfAView();
    void StylesShowOnPaper();
    void AnAbortedJobLeavesNothing();
    void PaperGoesThroughThePrinter_data();
    void PaperGoesThroughThePrinter();
    void APdfThatCannotBeWrittenIsAnError();
};

void tst_print::AProjectIsPrintedLineByLine_data()
{
    const Cases<std::function<void(PrintBench &)>, QString, QString> add("fill", "document",
                                                                         "lines");
    const auto fill = [](PrintBench &bench) {
        bench.project.ProjectDirectory = "/home/m\re/";
        bench.project.ProjectFileName = "modem";
        bench.AddSend("Ping", "A\r");
        bench.AddSend("Caf\xE9 \x01", "");
        bench.AddReceive({"Pong", "\xFF", {}, {}, 1, "it lives"});
        bench.AddReceive({.Name = "Off", .Sequence = "B", .Active = 0});
        // Its answer is outside the table.
        bench.AddReceive({.Name = "Odd", .Sequence = "B", .Answer = 2000, .Active = 7});
        // The printout is of the project as it was.
        bench.prompts.beforeWork = [&bench] {
            bench.tables.ClearProject();
            bench.project = {};
            bench.form.Display = 0;
        };
    };
    add("full", fill, "Serimonde - modem",
        "1/0 *Serimonde - 5.11.26\n1/1 */home/m\\x0De/modem\n1/4 *Send Sequences\n"
        "1/5 line to 997840,1000\n1/6 *0 - Ping\n1/7 41 | 0D\n1/9 *1 - Caf\u00E9 \u25A1\n"
        "1/14 *Receive Sequences\n1/15 line to 997840,3000\n1/16 *0 - Pong\n1/17 FF\n"
        "1/18 Receive sequence is active\n1/19 Respond with the following send sequence: Ping\n"
        "1/20 After receiving the sequence, insert comment: it lives\n1/22 *1 - Off\n1/23 42\n"
        "1/24 Receive sequence is inactive\n1/26 *2 - Odd\n1/27 42\n"
        "1/28 Receive sequence is active\n1/29 Respond with the following send sequence:");
    const auto one = [](PrintBench &bench) {
        bench.project.ProjectDirectory = "/the/folder/of/the/dialogs/";
        bench.AddReceive({"Pong", "B"});
    };
    add("unsaved, of one receive sequence", one, "Serimonde - Project",
        "1/0 *Serimonde - 5.11.26\n1/4 *Send Sequences\n1/5 line to 997840,1000\n"
        "1/8 *Receive Sequences\n1/9 line to 997840,1800\n1/10 *0 - Pong\n1/11 42\n"
        "1/12 Receive sequence is active");
}

void tst_print::AProjectIsPrintedLineByLine()
{
    QFETCH(std::function<void(PrintBench &)>, fill);
    RecordingOutput output = LargePaper();
    PrintBench bench(output);
    fill(bench);
    bench.print.PrintProject();
    QTEST(output.Lines().join(u'\n'), "lines");
    QTEST(bench.prompts.printsAsked.first().document, "document");
    QCOMPARE(output.ends, QStringList{"finished"});
    QCOMPARE(bench.pointer, QStringLiteral("on off "));
}

void tst_print::SequencesAreInTheFormOfTheLists()
{
    const QMap<qint16, QString> lines = {{-1, "1/7 065 | 013"}, // without a meaning: Decimal
                                         {0, "1/7 A | \u25A1"},
                                         {2, "1/7 065 | 013"},
                                         {3, "1/7 01000001 | 00001101"},
                                         {RepresentationCount, "1/7 065 | 013"}};
    for (const qint16 display : lines.keys()) {
        RecordingOutput output = LargePaper();
        PrintBench bench(output);
        bench.form.Display = display;
        bench.AddSend("Ping", "A\r");
        bench.print.PrintProject();
        QCOMPARE(output.Lines().value(4), lines[display]);
    }
}

void tst_print::CopiesAreOneJobOfPages()
{
    RecordingOutput output = LargePaper();
    output.scaleHeight = 15 * 200; // its last line is the 14th below the top margin
    PrintBench bench(output);
    bench.AddReceive({"Pong", "B"});
    bench.prompts.printer->copies = 3;
    bench.print.PrintProject();
    QStringList begins;
    for (const QString &line : output.Lines())
        if (line.contains("Serimonde") || line.contains("Pong"))
            begins << line;
    QCOMPARE(begins,
             (QStringList{"1/0 *Serimonde - 5.11.26", "2/1 *0 - Pong", "3/0 *Serimonde - 5.11.26",
                          "4/1 *0 - Pong", "5/0 *Serimonde - 5.11.26", "6/1 *0 - Pong"}));
    QCOMPARE(output.pages, 6);
    QCOMPARE(output.ends, QStringList{"finished"});
}

void tst_print::NothingIsPrintedWithoutAPrinter()
{
    RecordingOutput output;
    PrintBench bench(output);
    bench.prompts.printer.reset(); // cancelled
    bench.AddSend("Ping", "A");
    bench.print.PrintProject();
    bench.print.PrintCommunication();
    QCOMPARE(bench.prompts.printsAsked.size(), 2);
    QVERIFY(output.choices.isEmpty() && bench.prompts.shown.isEmpty());
}

void tst_print::AFailureThrowsTheProjectAway_data()
{
    const Cases<int, bool, bool, QStringList> add("drawings", "failFinish", "cancels", "ends");
    add("at once", 0, false, false, {"discarded"});
    add("in the second copy", 20, false, false, {"discarded"});
    add("at the end", -1, true, false, {"finished", "discarded"});
    add("cancelled at once", 0, false, true, {"discarded"});
    add("cancelled in the second copy", 20, false, true, {"discarded"});
    add("cancelled, and the disk full", 20, true, true, {"discarded"});
}

void tst_print::AFailureThrowsTheProjectAway()
{
    QFETCH(int, drawings);
    QFETCH(bool, failFinish);
    QFETCH(bool, cancels);
    RecordingOutput output = LargePaper();
    output.drawingsUntilFailure = cancels && !failFinish ? -1 : drawings;
    output.failFinish = failFinish;
    PrintBench bench(output);
    output.beforeDrawing = [&] {
        if (cancels && output.drawn.size() == drawings)
            bench.prompts.atWork->Cancel();
    };
    bench.AddSend("Ping", "A");
    bench.prompts.printer->copies = 3;
    bench.print.PrintProject();
    QTEST(output.ends, "ends");
    QVERIFY(drawings < 0 || cancels || output.drawn.size() == drawings + 1);
    QVERIFY(!cancels || output.drawn.size() <= drawings + 13); // a copy draws 13 times
    QCOMPARE(output.pages, drawings < 0 ? 3 : 1 + drawings / 13);
    const MessagePrompt told = PrintingFailed(failFinish ? "full" : "broken");
    QCOMPARE(bench.prompts.shown, cancels ? QList<MessagePrompt>() : QList{told});
    QCOMPARE(bench.pointer, cancels ? "on off " : "on off box ");

    cancels = false;
    output.drawingsUntilFailure = -1; // the next job starts clean
    output.failFinish = false;
    bench.print.PrintProject();
    QCOMPARE(output.ends.last(), QStringLiteral("finished"));
}

void tst_print::TheShownViewIsPrinted_data()
{
    const Cases<int, bool, bool, int, QByteArrayList> add("shown", "selects", "chooses", "flags",
                                                          "printed");
    add("the whole view", 0, false, false, 264, {"text of 0"});
    add("of another representation", 3, false, false, 264, {"text of 3"});
    add("the selection", 1, true, true, 265, {"of"});
    add("all in spite of a selection, as it was chosen", 1, true, false, 265, {"text of 1"});
    add("of no representation", RepresentationCount, false, false, 0, {});
}

void tst_print::TheShownViewIsPrinted()
{
    QFETCH(int, shown);
    QFETCH(bool, selects);
    QFETCH(bool, chooses);
    QFETCH(int, flags);
    RecordingOutput output;
    PrintBench bench(output);
    for (const Representation r : AllRepresentations)
        bench.View(r).AppendStyled("text of " + QByteArray::number(int(r)), {});
    if (selects)
        bench.View(Representation(shown)).Select(7, 5);
    bench.views.DisplayedRepresentation = Representation(shown);
    bench.prompts.printer->selectionOnly = chooses;
    output.beforeDrawing = [&] { bench.View(Representation(shown)).SetText("later", {}); };
    bench.print.PrintCommunication();
    QTEST(output.viewsPrinted, "printed");
    QVERIFY(output.margins.isEmpty());
    QCOMPARE(flags ? bench.prompts.printsAsked.first().flags : 0, flags);
    QCOMPARE(bench.pointer, flags ? QStringLiteral("on off ") : QString());
}

void tst_print::PdfsAreProposedBesideTheProject_data()
{
    const Cases<QString, QString, QStringList> add("folder", "name", "paths");
    add("saved", "/home/me/", "rev2.1",
        {"/home/me/rev2.1.pdf", "/home/me/rev2.1 communication HEX.pdf"});
    const QStringList unsaved = {"/last/Project.pdf", "/last/Project communication HEX.pdf"};
    add("unsaved", "/home/me/", {}, unsaved);
    add("of a name that is no text", "/home/me/", QString("caf") + QChar(0xDCE9), unsaved);
}

void tst_print::PdfsAreProposedBesideTheProject()
{
    RecordingOutput output;
    PrintBench bench(output);
    bench.AddSend("Ping", "A");
    bench.views.DisplayedRepresentation = Representation::Hex;
    bench.project.LastFolder = "/last/";
    QFETCH(QString, folder);
    bench.project.ProjectDirectory = folder;
    QFETCH(QString, name);
    bench.project.ProjectFileName = name;
    bench.print.PrintProject();
    bench.print.PrintCommunication();
    QStringList proposed;
    for (const PrintDialogRequest &request : bench.prompts.printsAsked)
        proposed << request.pdfPath;
    QTEST(proposed, "paths");
}

/// A sequence may be as long as a file.
void tst_print::ALongTextIsCancelled()
{
    RecordingOutput output = LargePaper();
    PrintBench bench(output);
    output.beforeDrawing = [&] {
        if (!output.drawn.isEmpty() && output.drawn.last().endsWith(" 41"))
            bench.prompts.atWork->Cancel();
    };
    bench.AddSend("Ping", QByteArray(10000, 'A'));
    bench.print.PrintProject();
    QVERIFY2(output.drawn.size() < 100, qPrintable(QString::number(output.drawn.size())));
}

void tst_print::TheWindowPrints()
{
    ProgramBench bench;
    const auto entry = [&](const char *name) {
        return bench.program->Window()->findChild<QAction *>(name);
    };
    QKeySequence keys;
    bench.Run({{[&] {
                    keys = entry("mnuPrintCommunication")->shortcut();
                    entry("mnuPrintCommunication")->trigger();
                    bench.ToolbarButton(17)->trigger();
                    entry("mnuPrintProject")->trigger();
                },
                [&] { return !bench.prompts.shown.isEmpty(); }}});
    QCOMPARE(keys, QKeySequence(Qt::CTRL | Qt::Key_P));
    QCOMPARE(bench.prompts.printsAsked.size(), 2);
    QCOMPARE(bench.prompts.shown.first().text, QStringLiteral("Nothing to print"));
}

void tst_print::PdfOfAProject()
{
    SystemBench on;
    PrintBench &bench = on.bench;
    QStringList all;
    for (int i = 0; i < 40; ++i) {
        bench.AddSend("Sequence", QByteArray(3, char(i)));
        const QString byte = QString::number(i, 16).toUpper().rightJustified(2, '0');
        all << QString("%1 - Sequence").arg(i) << QStringList{byte, byte, byte}.join(" | ");
    }
    bench.AddReceive({"Last", "B"});
    bench.prompts.printer = {.pdfPath = on.Path("project.pdf"), .copies = 3};
    bench.print.PrintProject();
    QCOMPARE(bench.prompts.shown, QList<MessagePrompt>{});
    const QStringList text = TextOf(on.Path("project.pdf")).replaceInStrings("\f", "");
    QStringList printed;
    for (const QString &line : text.filter(QRegularExpression(" - Sequence| \\| ")))
        printed << line.trimmed();
    QCOMPARE(printed, all + all + all);
    QCOMPARE(text.filter("Receive sequence is active").size(), 3);
    const int pages = PagesOf(on.Path("project.pdf"));
    QVERIFY2(pages > 3 && pages % 3 == 0, qPrintable(QString::number(pages)));
}

/// Where pages break depends on the fonts of the system.
void tst_print::PdfOfAView()
{
    SystemBench on;
    PrintBench &bench = on.bench;
    QStringList all;
    for (int i = 1000; i < 1500; ++i)
        all << QStringLiteral("line %1").arg(i);
    const QString longLine = QStringLiteral("0123456789").repeated(30);
    bench.View().AppendStyled((all.join("\r\n") + "\r\n" + longLine).toLatin1(), {});
    bench.View().Select(11, 20);
    const auto print = [&](PrinterChoice choice) {
        choice.pdfPath = on.Path("view.pdf");
        bench.prompts.printer = choice;
        bench.print.PrintCommunication();
        return TextOf(choice.pdfPath).replaceInStrings("\f", "").filter(QRegularExpression("."));
    };
    const QString path = on.Path("view.pdf");
    const QStringList portrait = print({});
    const int pages = PagesOf(path);
    QCOMPARE(portrait.first(500), all);
    QCOMPARE(portrait.sliced(500).join(""), longLine); // its rows begin where all lines begin
    QVERIFY(pages > 1 && portrait.size() > 501);
    QCOMPARE(print({.copies = 2}), portrait + portrait);
    QCOMPARE(PagesOf(path), 2 * pages);
    QCOMPARE(print({.orientation = PageOrientation::Landscape}).first(500), all);
    QVERIFY(PagesOf(path) > pages);
    QCOMPARE(print({.selectionOnly = true}), (QStringList{"line 1001"}));
    const QStringList margined = print({.marginText = true});
    const QRegularExpression margin("^ *ASCII +5\\.11\\.26 +Page (\\d+) of (\\d+)$");
    QCOMPARE(margined.filter(margin).size(), pages);
    QCOMPARE(margined.size(), portrait.size() + pages);
    QCOMPARE(margin.match(margined.filter(margin).last()).captured(1), QString::number(pages));
    QVERIFY(bench.settings.MarginText);
    QCOMPARE(bench.prompts.shown, QList<MessagePrompt>{});
}

void tst_print::StylesShowOnPaper()
{
    SystemBench on;
    const auto print = [&](const TextStyle &style, PrintColour colour = PrintColour::Colour) {
        on.bench.View().SetText("HHH HHH", style);
        on.bench.prompts.printer = {.pdfPath = on.Path("style.pdf"), .colour = colour};
        on.bench.print.PrintCommunication();
        return PictureOf(on.Path("style.pdf"));
    };
    const QRgb red = qRgb(255, 0, 0);
    const int plain = DotsOf(print({.colour = 0x0000FF})).value(red);
    QVERIFY(plain > 100);
    QVERIFY(DotsOf(print({.colour = 0x0000FF, .bold = true})).value(red) > plain * 5 / 4);
    QVERIFY(DotsOf(print({.colour = 0x0000FF, .underline = true})).value(red) > plain);
    on.bench.display.DispBack = 0x800000;
    const auto dark = DotsOf(print({.colour = 0xFF0000}));
    QVERIFY(dark.size() == 3 && dark[qRgb(0, 0, 255)] > 100 && dark[qRgb(0, 0, 128)] > plain);
    const QImage grey = print({.colour = 0x0000FF}, PrintColour::Monochrome);
    QVERIFY(grey.allGray() && DotsOf(grey).size() == 3); // paper, background and text
}

void tst_print::PaperGoesThroughThePrinter_data()
{
    const Cases<QString, bool, bool, int, bool> add("place", "project", "cancels", "pages", "told");
    add("a project", "paper.pdf", true, false, 2, false);
    add("a view", "paper.pdf", false, false, 2, false);
    add("a project that is cancelled", "paper.pdf", true, true, 0, false);
    add("a view that is cancelled", "paper.pdf", false, true, 0, false);
    add("a project on a printer that is out of order", "missing/paper.pdf", true, false, 0, true);
    add("a view on a printer that is out of order", "missing/paper.pdf", false, false, 0, false);
}

/// The toolkit's printer prints what it was given even if the job is aborted.
void tst_print::AnAbortedJobLeavesNothing()
{
    const auto printer = std::make_shared<QPrinter>();
    SystemBench on;
    printer->setOutputFileName(on.Path("x.pdf"));
    for (const PrinterChoice &choice :
         {PrinterChoice{.pdfPath = on.Path("x.pdf")}, PrinterChoice{.printer = printer}}) {
        const auto device = on.output.MakePrinter(choice);
        const auto print = [&] {
            device->SetUp(PageOrientation::Portrait, PrintColour::Colour);
            device->Print("text", PrinterDevice::LineEnd::NextLine);
            device->NewPage();
            device->Print("more", PrinterDevice::LineEnd::NextLine);
        };
        print();
        device->KillDoc();
        QCOMPARE(QDir(on.folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
        print();
        device->EndDoc();
        QCOMPARE(PagesOf(on.Path("x.pdf")), 2);
        QVERIFY(QFile::remove(on.Path("x.pdf")));
    }
}

/// The toolkit's printer without a system behind it writes a file by itself.
void tst_print::PaperGoesThroughThePrinter()
{
    QFETCH(QString, place);
    QFETCH(bool, project);
    QFETCH(bool, cancels);
    SystemBench on;
    PrintBench &bench = on.bench;
    bench.AddSend("Ping", "A");
    bench.View().AppendStyled("text", {});
    bench.prompts.beforeWork = [&] { QVERIFY(!cancels || bench.prompts.atWork->Cancel()); };
    bench.prompts.printer = {.copies = 2, .printer = std::make_shared<QPrinter>()};
    bench.prompts.printer->printer->setOutputFileName(on.Path(place));
    project ? bench.print.PrintProject() : bench.print.PrintCommunication();
    QTEST(PagesOf(on.Path(place)), "pages");
    QCOMPARE(QFile::exists(on.Path(place)), PagesOf(on.Path(place)) > 0);
    QTEST(bench.prompts.shown.contains(PrintingFailed("The printer does not accept the page")),
          "told");
}

/// A lost file must not pass for success, whichever command was to make it.
void tst_print::APdfThatCannotBeWrittenIsAnError()
{
    ScriptedDisk disk;
    disk.files["/old.pdf"] = "old";
    OpenFiles files(disk);
    QtPrintOutput output(files);
    PrintBench bench(output);
    bench.prompts.printer = {.pdfPath = "/old.pdf", .copies = 20};
    bench.AddSend("Ping", "A");
    bench.View().AppendStyled("text", {});
    disk.room = 2000; // for the first page only
    bench.print.PrintProject();
    QCOMPARE(disk.room, 0);
    disk.room = 2000;
    bench.print.PrintCommunication();
    QCOMPARE(disk.room, 0);
    const MessagePrompt noRoom = PrintingFailed("No space left on device");
    QCOMPARE(bench.prompts.shown, QList({noRoom, noRoom}));
    QCOMPARE(bench.pointer, QStringLiteral("on off box on off box "));
    QCOMPARE(disk.files["/old.pdf"], QByteArray("old"));
    QCOMPARE(disk.unfinished, 0);
}

QTEST_MAIN(tst_print)
#include "tst_print.moc"
