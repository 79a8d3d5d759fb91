// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "comm/CommunicationViews.h"
#include "platform/QtPrintOutput.h"
#include "platform/QtPrompts.h"
#include "platform/SystemFiles.h"
#include "print/MdPrint.h"
#include "project/OpenFiles.h"
#include "project/SettingsRecord.h"
#include "sequences/MdSequenceEdition.h"
#include "support/Cases.h"
#include "support/FixedClock.h"
#include "support/ProgramBench.h"
#include "support/RecordingPrinter.h"
#include "support/ScriptedDisk.h"
#include "support/ScriptedPrompts.h"

#include <QAction>
#include <QComboBox>
#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QProcess>
#include <QRadioButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTextStream>

namespace
{

const MessagePrompt PrintingFailed = {.text = "Error while printing", .icon = PromptIcon::Critical};

/// The print commands with a project, onto the given output.
class PrintBench
{
  public:
    SettingsRecord settings;
    MdSequenceEdition tables;
    CommunicationViews views;
    ScriptedPrompts prompts;
    FixedClock clock;
    QString pointer; ///< "on" and "off" of the hourglass
    MdPrint print;

    explicit PrintBench(PrintOutput &output)
        : print({settings, tables, views, prompts, clock, output,
                 [this](bool busy) { pointer += busy ? "on " : "off "; }})
    {
        settings.Display = qint16(Representation::Hex);
        prompts.whileStanding = [this] { pointer += "box "; };
        prompts.printer = PrinterChoice{};
    }

    void AddSend(const QByteArray &name, const QByteArray &sequence)
    {
        tables.EditSend(tables.SendCount()).Name = name;
        tables.EditSend(tables.SendCount()).Sequence = sequence;
        tables.SetSendCount(tables.SendCount() + 1);
    }
    ReceiveSequence &AddReceive(const QByteArray &name, const QByteArray &sequence)
    {
        tables.SetReceiveCount(tables.ReceiveCount() + 1);
        ReceiveSequence &record = tables.EditReceive(tables.ReceiveCount() - 1);
        record.Name = name;
        record.Sequence = sequence;
        return record;
    }
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

} // namespace

class tst_print : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void AProjectIsPrintedLineByLine();
    void SequencesAreInTheFormOfTheLists_data();
    void SequencesAreInTheFormOfTheLists();
    void AnUnsavedProjectOfOneReceiveSequence();
    void CopiesAreOneJobOfPages();
    void NothingIsPrintedWithoutAProjectOrAPrinter();
    void AFailureThrowsTheProjectAway_data();
    void AFailureThrowsTheProjectAway();
    void TheShownViewIsPrinted_data();
    void TheShownViewIsPrinted();
    void TheDialogTellsWhatWasChosen();
    void TheWindowPrints();
    void PdfOfAProject();
    void PdfOfAView_data();
    void PdfOfAView();
    void PaperGoesThroughThePrinter_data();
    void PaperGoesThroughThePrinter();
    void APdfThatCannotBeWrittenIsAnError_data();
    void APdfThatCannotBeWrittenIsAnError();
};

void tst_print::AProjectIsPrintedLineByLine()
{
    RecordingOutput output = LargePaper();
    PrintBench bench(output);
    bench.settings.ProjectDirectory = "/home/me/";
    bench.settings.ProjectFileName = "modem";
    bench.AddSend("Ping", "A\r");
    bench.AddSend("Caf\xE9 \x01", "");
    ReceiveSequence &pong = bench.AddReceive("Pong", "\xFF");
    pong.Answer = 1;
    pong.Comment = "it lives";
    bench.AddReceive("Off", "B").Active = 0;
    ReceiveSequence &odd = bench.AddReceive("Odd", "B");
    odd.Active = 7;
    odd.Answer = 2000; // outside the table
    bench.print.PrintProject();
    const QStringList expected = {
        "1/0 *Serimonde - 5.11.26",
        "1/1 */home/me/modem",
        "1/4 *Send Sequences",
        "1/5 line to 997840,1000",
        "1/6 *0 - Ping",
        "1/7 41 | 0D",
        "1/9 *1 - Caf\u00E9 \u25A1", // followed by the line of no bytes and an empty one
        "1/14 *Receive Sequences",
        "1/15 line to 997840,3000",
        "1/16 *0 - Pong",
        "1/17 FF",
        "1/18 Receive sequence is active",
        "1/19 Respond with the following send sequence: Ping",
        "1/20 After receiving the sequence, insert comment: it lives",
        "1/22 *1 - Off",
        "1/23 42",
        "1/24 Receive sequence is inactive",
        "1/26 *2 - Odd",
        "1/27 42",
        "1/28 Receive sequence is active",
        "1/29 Respond with the following send sequence:",
    };
    QCOMPARE(output.Lines(), expected);
    QCOMPARE(output.ends, QStringList{"finished"});
    QCOMPARE(bench.pointer, QStringLiteral("on off "));
}

void tst_print::SequencesAreInTheFormOfTheLists_data()
{
    const Cases<qint16, QString> add("display", "line");
    add("ASCII", 0, "1/7 A | \u25A1");
    add("HEX", 1, "1/7 41 | 0D");
    add("Decimal", 2, "1/7 065 | 013");
    add("Binary", 3, "1/7 01000001 | 00001101");
    add("Decimal for what is above", 4, "1/7 065 | 013");
    add("Decimal for what is below", -1, "1/7 065 | 013");
}

void tst_print::SequencesAreInTheFormOfTheLists()
{
    QFETCH(qint16, display);
    RecordingOutput output = LargePaper();
    PrintBench bench(output);
    bench.settings.Display = display;
    bench.AddSend("Ping", "A\r");
    bench.print.PrintProject();
    QTEST(output.Lines().value(4), "line");
}

void tst_print::AnUnsavedProjectOfOneReceiveSequence()
{
    RecordingOutput output = LargePaper();
    PrintBench bench(output);
    bench.AddReceive("Pong", "B");
    bench.print.PrintProject();
    const QStringList expected = {"1/0 *Serimonde - 5.11.26",
                                  "1/4 *Send Sequences",
                                  "1/5 line to 997840,1000",
                                  "1/8 *Receive Sequences",
                                  "1/9 line to 997840,1800",
                                  "1/10 *0 - Pong",
                                  "1/11 42",
                                  "1/12 Receive sequence is active"};
    QCOMPARE(output.Lines(), expected);
}

void tst_print::CopiesAreOneJobOfPages()
{
    RecordingOutput output = LargePaper();
    output.scaleHeight = 15 * 200; // its last line is the 14th below the top margin
    PrintBench bench(output);
    bench.AddReceive("Pong", "B");
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

void tst_print::NothingIsPrintedWithoutAProjectOrAPrinter()
{
    RecordingOutput output;
    PrintBench bench(output);
    bench.prompts.printer.reset(); // cancelled
    bench.print.PrintProject();
    QCOMPARE(bench.prompts.shown, QList<MessagePrompt>{CriticalMessage("Nothing to print")});
    QVERIFY(bench.prompts.printsAsked.isEmpty());
    bench.AddSend("Ping", "A");
    bench.print.PrintProject();
    bench.print.PrintCommunication();
    QCOMPARE(bench.prompts.printsAsked.size(), 2);
    QVERIFY(output.choices.isEmpty() && bench.prompts.shown.size() == 1);
}

void tst_print::AFailureThrowsTheProjectAway_data()
{
    const Cases<int, bool, QStringList> add("drawings", "failFinish", "ends");
    add("at once", 0, false, {"discarded"});
    add("in the second copy", 30, false, {"discarded"});
    add("at the end", -1, true, {"finished", "discarded"});
}

void tst_print::AFailureThrowsTheProjectAway()
{
    QFETCH(int, drawings);
    QFETCH(bool, failFinish);
    RecordingOutput output = LargePaper();
    output.drawingsUntilFailure = drawings;
    output.failFinish = failFinish;
    PrintBench bench(output);
    bench.AddSend("Ping", "A");
    bench.prompts.printer->copies = 3;
    bench.print.PrintProject();
    QTEST(output.ends, "ends");
    QVERIFY(drawings < 0 || output.drawn.size() == drawings + 1);
    QCOMPARE(bench.prompts.shown, QList<MessagePrompt>{PrintingFailed});
    QCOMPARE(bench.pointer, QStringLiteral("on off box "));

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
    add("of no representation", 4, false, false, 0, {});
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
    bench.settings.DisplayedRepresentation = Representation(shown);
    bench.prompts.printer->selectionOnly = chooses;
    bench.print.PrintCommunication();
    QTEST(output.viewsPrinted, "printed");
    QCOMPARE(flags ? bench.prompts.printsAsked.first().flags : 0, flags);
    QCOMPARE(bench.pointer, flags ? QStringLiteral("on off ") : QString());
}

void tst_print::TheDialogTellsWhatWasChosen()
{
    const QTemporaryDir folder;
    QTextStream errors(stderr);
    QtPrompts prompts(errors);
    QTimer::singleShot(0, this, [&] {
        auto *dialog = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
        auto *printers = dialog->findChild<QComboBox *>("printers");
        printers->setCurrentIndex(printers->count() - 1); // the PDF file
        dialog->findChild<QLineEdit *>("filename")->setText(folder.filePath("x.pdf"));
        dialog->findChild<QSpinBox *>("copies")->setValue(3);
        dialog->findChild<QRadioButton *>("grayscale")->setChecked(true);
        dialog->printer()->setPageOrientation(QPageLayout::Landscape);
        dialog->accept();
    });
    const auto choice = prompts.ChoosePrinter({.document = "x", .flags = 265});
    QVERIFY(choice);
    QCOMPARE(choice->pdfPath, folder.filePath("x.pdf"));
    QCOMPARE(choice->copies, 3);
    QCOMPARE(choice->printer->copyCount(), 1);
    QCOMPARE(choice->colour, PrintColour::Monochrome);
    QCOMPARE(choice->orientation, PageOrientation::Landscape);
    QVERIFY(choice->selectionOnly);
    QTimer::singleShot(0, this, [] {
        QVERIFY(!QApplication::activeModalWidget()->findChild<QWidget *>("reverse")->isVisible());
        qobject_cast<QDialog *>(QApplication::activeModalWidget())->reject();
    });
    QVERIFY(!prompts.ChoosePrinter({.document = "x", .flags = 264}));
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
                    bench.program->Window()->ToolbarButton(17)->trigger();
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
    bench.settings.ProjectFileName = "many";
    for (int i = 0; i < 40; ++i)
        bench.AddSend("Sequence", QByteArray(3, char(i)));
    bench.prompts.printer->pdfPath = on.Path("project.pdf");
    bench.prompts.printer->copies = 3;
    bench.print.PrintProject();
    QCOMPARE(bench.prompts.shown, QList<MessagePrompt>{});

    const QStringList text = TextOf(bench.prompts.printer->pdfPath);
    QCOMPARE(text.first().trimmed(), QStringLiteral("Serimonde - 5.11.26"));
    QCOMPARE(text.filter("39 - Sequence").size(), 3);
    QCOMPARE(text.filter("27 | 27 | 27").size(), 3);
    // 128 lines a copy on pages of at most 60; a copy begins with a form feed.
    const int pages = PagesOf(bench.prompts.printer->pdfPath);
    QVERIFY2(pages == 9, qPrintable(QString::number(pages)));
    QCOMPARE(text.filter("\fSerimonde - 5.11.26").size(), 2);
}

void tst_print::PdfOfAView_data()
{
    const Cases<PageOrientation, qint64, int, int, int> add("orientation", "selected", "copies",
                                                            "pages", "lines");
    add("portrait", PageOrientation::Portrait, 0, 1, 8, 500);
    add("landscape", PageOrientation::Landscape, 0, 1, 12, 500);
    add("two copies", PageOrientation::Portrait, 0, 2, 16, 1000);
    add("a selection", PageOrientation::Portrait, 22, 1, 1, 2);
}

void tst_print::PdfOfAView()
{
    QFETCH(PageOrientation, orientation);
    QFETCH(qint64, selected);
    QFETCH(int, copies);
    QFETCH(int, lines);
    SystemBench on;
    PrintBench &bench = on.bench;
    for (int i = 0; i < 500; ++i)
        bench.View().AppendStyled("line " + QByteArray::number(i).rightJustified(4, '0') + "\r\n",
                                  {.colour = i % 2 ? 0xFF0000 : 0x0000FF});
    bench.View().Select(0, selected);
    bench.prompts.printer = {.pdfPath = on.Path("view.pdf"),
                             .orientation = orientation,
                             .copies = copies,
                             .selectionOnly = selected > 0};
    bench.print.PrintCommunication();
    QCOMPARE(bench.prompts.shown, QList<MessagePrompt>{});
    QTEST(PagesOf(bench.prompts.printer->pdfPath), "pages");
    const QStringList text = TextOf(bench.prompts.printer->pdfPath).filter("line ");
    QCOMPARE(text.size(), lines);
    QCOMPARE(text.last().trimmed(), selected ? QStringLiteral("line 0001") : "line 0499");
}

void tst_print::PaperGoesThroughThePrinter_data()
{
    const Cases<QString, bool, int> add("place", "project", "pages");
    add("a project", "paper.pdf", true, 2);
    add("a view", "paper.pdf", false, 2);
    add("a project on a printer that is out of order", "missing/paper.pdf", true, 0);
    add("a view on a printer that is out of order", "missing/paper.pdf", false, 0);
}

/// The toolkit's printer without a system behind it writes a file by itself.
void tst_print::PaperGoesThroughThePrinter()
{
    QFETCH(QString, place);
    QFETCH(bool, project);
    QFETCH(int, pages);
    SystemBench on;
    PrintBench &bench = on.bench;
    bench.AddSend("Ping", "A");
    bench.View().AppendStyled("text", {});
    bench.prompts.printer->copies = 2;
    bench.prompts.printer->printer = std::make_shared<QPrinter>();
    bench.prompts.printer->printer->setOutputFileName(on.Path(place));
    project ? bench.print.PrintProject() : bench.print.PrintCommunication();
    QCOMPARE(PagesOf(on.Path(place)), pages);
    QCOMPARE(bench.prompts.shown.contains(PrintingFailed), pages == 0);
}

void tst_print::APdfThatCannotBeWrittenIsAnError_data()
{
    const Cases<qint64, bool> add("room", "failTakePlace");
    add("no room at all", 0, false);
    add("room for the first page only", 20000, false);
    add("another file keeps the place", ScriptedDisk::Plenty, true);
}

void tst_print::APdfThatCannotBeWrittenIsAnError()
{
    QFETCH(qint64, room);
    QFETCH(bool, failTakePlace);
    ScriptedDisk disk;
    disk.room = room;
    disk.failTakePlace = failTakePlace;
    disk.files["/old.pdf"] = "old";
    OpenFiles files(disk);
    QtPrintOutput output(files);
    PrintBench bench(output);
    bench.prompts.printer->pdfPath = "/old.pdf";
    bench.prompts.printer->copies = 20;
    bench.AddSend("Ping", "A");
    bench.View().AppendStyled("text", {});
    bench.print.PrintProject();
    bench.print.PrintCommunication();
    QCOMPARE(bench.prompts.shown, (QList<MessagePrompt>{PrintingFailed, PrintingFailed}));
    QCOMPARE(bench.pointer, QStringLiteral("on off box on off box "));
    QCOMPARE(disk.files["/old.pdf"], QByteArray("old"));
    QCOMPARE(disk.unfinished, 0);
}

QTEST_MAIN(tst_print)
#include "tst_print.moc"
