// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PrinterDialog.h"

#include "ScrollPage.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QFileInfo>
#include <QLineEdit>
#include <QPageLayout>
#include <QPrinter>

#include <algorithm>

namespace
{

/// Names that the toolkit gives to parts of its own dialog; a dialog of the system has none.
const QString RangeGroup = QStringLiteral("gbPrintRange");
const QString FileField = QStringLiteral("filename");
const QString OutputPage = QStringLiteral("copiesTab");

/// A selection is offered only where there is one. Ranges of pages never are.
QAbstractPrintDialog::PrintDialogOptions OptionsOf(const PrintDialogRequest &request)
{
    QAbstractPrintDialog::PrintDialogOptions options =
        QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize;
    options.setFlag(QAbstractPrintDialog::PrintSelection, request.SelectionChosen());
    return options;
}

} // namespace

PrinterDialog::PrinterDialog(const PrintDialogRequest &request,
                             const std::shared_ptr<QPrinter> &printer, QWidget *owner)
    : QPrintDialog(printer.get(), owner), m_request(request), m_printer(printer)
{
    setOptions(OptionsOf(request));
    if (request.SelectionChosen())
        setPrintRange(Selection);
    if (request.marginText) {
        CheckMarginText = new QCheckBox(QStringLiteral("&View, date and page in the margin"), this);
        CheckMarginText->setObjectName(QStringLiteral("CheckMarginText"));
        CheckMarginText->setChecked(*request.marginText);
    }
    HideWhatIsNotOffered();
    ProposePdf();
    Arrange();
}

/// The toolkit's own dialog shows some choices whether they are offered or not, and a choice that
/// has no effect would deceive.
void PrinterDialog::HideWhatIsNotOffered()
{
    const auto *range = findChild<QWidget *>(RangeGroup);
    const auto *output = findChild<QWidget *>(OutputPage);
    if (!range || !output)
        return;
    for (const char *name :
         {"printRange", "from", "label_3", "to", "pagesRadioButton", "pagesLineEdit"}) {
        if (auto *choice = range->findChild<QWidget *>(QLatin1String(name)))
            choice->hide();
    }
    if (auto *reverse = output->findChild<QWidget *>(QStringLiteral("reverse")))
        reverse->hide();
}

/// The printer itself is not told the file: it would become one that writes files.
void PrinterDialog::ProposePdf()
{
    constexpr int Letters = 40; // of a path that are to be seen
    auto *file = findChild<QLineEdit *>(FileField);
    if (!file || m_request.pdfPath.isEmpty())
        return;
    file->setText(m_request.pdfPath);
    file->setMinimumWidth(Letters * file->fontMetrics().averageCharWidth());
}

/// All but the buttons scrolls where the screen is too small for the part that is collapsed first.
void PrinterDialog::Arrange()
{
    auto *column = qobject_cast<QBoxLayout *>(layout());
    if (!column)
        return;
    QWidgetList page;
    for (int i = 0; i + 1 < column->count(); ++i)
        page << column->itemAt(i)->widget();
    if (page.isEmpty() || page.contains(nullptr))
        return;
    if (CheckMarginText)
        page.insert(1, CheckMarginText);
    auto *range = findChild<QWidget *>(RangeGroup);
    if (range && m_request.SelectionChosen())
        page.insert(1, range);

    auto *content = new QWidget(this);
    auto *inner = new QVBoxLayout(content);
    inner->setContentsMargins({});
    for (QWidget *each : page) {
        column->removeWidget(each);
        inner->addWidget(each);
    }
    column->insertWidget(0, new ScrollPage(content));
    OrderTabs(page);
}

/// From above to below, as the page is read.
void PrinterDialog::OrderTabs(const QWidgetList &page)
{
    QWidget *last = nullptr;
    for (QWidget *each : page) {
        for (QWidget *part : QWidgetList{each} + each->findChildren<QWidget *>()) {
            if (!(part->focusPolicy() & Qt::TabFocus))
                continue;
            if (last)
                setTabOrder(last, part);
            last = part;
        }
    }
}

PrinterChoice PrinterDialog::Choice() const
{
    PrinterChoice choice = {.document = m_request.document, .printer = m_printer};
    if (m_printer->outputFormat() == QPrinter::PdfFormat)
        choice.pdfPath = QFileInfo(m_printer->outputFileName()).absoluteFilePath();
    if (m_printer->pageLayout().orientation() == QPageLayout::Landscape)
        choice.orientation = PageOrientation::Landscape;
    if (m_printer->colorMode() == QPrinter::GrayScale)
        choice.colour = PrintColour::Monochrome;
    choice.copies = std::max(1, m_printer->copyCount());
    m_printer->setCopyCount(1);
    choice.selectionOnly = printRange() == Selection;
    choice.marginText = CheckMarginText && CheckMarginText->isChecked();
    return choice;
}
