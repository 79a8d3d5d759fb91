// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtPrompts.h"
#include "frmMain.h"
#include "support/Cases.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSemaphore>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTextStream>
#include <QTimer>

namespace
{

/// What the real dialog returns after acting in it; a dialog then still open is cancelled.
std::optional<PrinterChoice> ChooseInDialog(QtPrompts &prompts, const PrintDialogRequest &request,
                                            const std::function<void(QPrintDialog &)> &act)
{
    QTimer::singleShot(0, qApp, [act] {
        const QPointer<QDialog> modal = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (auto *dialog = qobject_cast<QPrintDialog *>(modal))
            act(*dialog);
        if (modal && modal->isVisible())
            modal->reject();
    });
    return prompts.ChoosePrinter(request);
}

/// The file that is proposed.
void ChoosePdf(const QPrintDialog &dialog)
{
    auto *printers = dialog.findChild<QComboBox *>("printers");
    printers->setCurrentIndex(printers->count() - 1);
}

QDialog *BoxOfWork()
{
    for (QWidget *window : QApplication::topLevelWidgets())
        if (window->findChild<QProgressBar *>("pbDone", Qt::FindDirectChildrenOnly))
            return qobject_cast<QDialog *>(window);
    return nullptr;
}

void PressOk(const QPrintDialog &dialog)
{
    dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok)->click();
}

} // namespace

/// What stands on the screen before and while something is printed.
class tst_printdialog : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void TheDialogTellsWhatWasChosen();
    void TheDialogOffersOnlyWhatHasAnEffect();
    void TheEndAnswersWhetherToOverwrite();
    void WorkHasItsBox_data();
    void WorkHasItsBox();
};

void tst_printdialog::TheDialogTellsWhatWasChosen()
{
    const QTemporaryDir folder;
    QTextStream errors(stderr);
    QtPrompts prompts(errors);
    const PrintDialogRequest request = {
        .document = "x", .flags = 265, .pdfPath = folder.filePath("x.pdf"), .marginText = true};
    const auto choice = ChooseInDialog(prompts, request, [&](QPrintDialog &dialog) {
        auto *margin = dialog.findChild<QCheckBox *>("CheckMarginText");
        QVERIFY(margin->isChecked() && margin->isVisible());
        QVERIFY(dialog.findChild<QRadioButton *>("printSelection")->isVisible());
        QVERIFY(dialog.findChild<QRadioButton *>("printSelection")->isChecked());
        ChoosePdf(dialog);
        dialog.findChild<QSpinBox *>("copies")->setValue(3);
        dialog.findChild<QRadioButton *>("grayscale")->setChecked(true);
        dialog.printer()->setPageOrientation(QPageLayout::Landscape);
        PressOk(dialog);
    });
    QVERIFY(choice);
    QCOMPARE(choice->pdfPath, folder.filePath("x.pdf"));
    QCOMPARE(choice->copies, 3);
    QCOMPARE(choice->printer->copyCount(), 1);
    QCOMPARE(choice->colour, PrintColour::Monochrome);
    QCOMPARE(choice->orientation, PageOrientation::Landscape);
    QVERIFY(choice->selectionOnly);
    QVERIFY(choice->marginText);
}

/// The toolkit's dialog is searched by what it shows: the names by which it is told to hide choices
/// are its own affair and may change.
void tst_printdialog::TheDialogOffersOnlyWhatHasAnEffect()
{
    QTextStream errors(stderr);
    QtPrompts prompts(errors);
    const std::pair<int, QString> offers[] = {{264, "1, Copies:, Print all"},
                                              {265, "1, Copies:, Print all, Selection"}};
    for (const auto &[flags, expected] : offers) {
        QStringList offered;
        QVERIFY(!ChooseInDialog(
            prompts, {.document = "x", .flags = flags}, [&](const QPrintDialog &dialog) {
                for (const auto *group : dialog.findChildren<QGroupBox *>())
                    if (group->title() == "Print range" || group->title() == "Output Settings")
                        for (const auto *choice : group->findChildren<QWidget *>())
                            if (const QString text = choice->property("text").toString();
                                !choice->isHidden() && choice->parentWidget() == group)
                                offered
                                    << (text.isEmpty() ? choice->metaObject()->className() : text);
            }));
        for (const char *other : {"QLabel", "Page Set:", "QComboBox"}) // a picture; disabled anyway
            offered.removeAll(other);
        offered.sort();
        QCOMPARE(offered.join(", "), expected);
    }
}

/// The dialog asks before it takes a file that exists; to be ended is no Yes.
void tst_printdialog::TheEndAnswersWhetherToOverwrite()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("old.pdf"));
    QVERIFY(file.open(QIODevice::ReadWrite) && file.write("old") == 3 && file.flush());
    QString console;
    QTextStream errors(&console);
    QtPrompts prompts(errors);
    QString question;
    QVERIFY(!ChooseInDialog(prompts, {.pdfPath = file.fileName()}, [&](QPrintDialog &dialog) {
        ChoosePdf(dialog);
        QTimer::singleShot(0, &dialog, [&] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
                question = box->text();
            prompts.EndUnasked();
            frmMain::UnloadForms(nullptr);
        });
        PressOk(dialog);
    }));
    QVERIFY2(question.contains("overwrite"), qPrintable(question));
    file.seek(0);
    QCOMPARE(file.readAll(), "old");
}

void tst_printdialog::WorkHasItsBox_data()
{
    const Cases<std::function<void(QDialog &)>, bool> add("act", "wanted");
    add(
        "which shows how far it is",
        [](QDialog &box) { QTRY_COMPARE(box.findChild<QProgressBar *>()->value(), 7); }, true);
    add(
        "and can be cancelled",
        [](QDialog &box) { box.findChild<QPushButton *>("cmdCancel")->click(); }, false);
    add(
        "by Escape too", [](QDialog &box) { QTest::keyClick(&box, Qt::Key_Escape); }, false);
    add(
        "which the end of the program cancels", [](QDialog &) { frmMain::UnloadForms(nullptr); },
        false);
}

/// Where there is no box to be seen yet, commands are blocked already, but not by a modal window:
/// that would take the focus that is just coming back to the window, and not give it back.
void tst_printdialog::WorkHasItsBox()
{
    QFETCH(std::function<void(QDialog &)>, act);
    QWidget window;
    window.show();
    QPushButton command(&window);
    int commands = 0;
    connect(&command, &QPushButton::clicked, &window, [&] { ++commands; });
    command.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTextStream errors(stderr);
    QtPrompts prompts(errors);
    QSemaphore acted;
    bool seenAtOnce = true;
    QTimer::singleShot(0, qApp, [&] {
        QDialog *box = BoxOfWork();
        seenAtOnce = QApplication::activeModalWidget() || box->isVisible();
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, command.geometry().center());
        [&] {
            QTRY_VERIFY(box->isVisible());
            act(*box);
        }();
        acted.release();
    });
    bool wanted = false;
    const bool done = prompts.DoWork("x", [&](WorkProgress &progress) {
        progress.Begin(10);
        for (int i = 0; i < 7; ++i)
            progress.Step();
        acted.acquire();
        wanted = progress.Settle();
    });
    QVERIFY(done && !seenAtOnce);
    QTEST(wanted, "wanted");
    QCOMPARE(commands, 0);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, command.geometry().center());
    QCOMPARE(commands, 1);
}

QTEST_MAIN(tst_printdialog)
#include "tst_printdialog.moc"
