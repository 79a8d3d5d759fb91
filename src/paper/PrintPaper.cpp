// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PrintPaper.h"

#include "ClOutputFile.h"

#include <QIODevice>
#include <QPageLayout>
#include <QPdfWriter>
#include <QPrinter>

class PrintPaper::Sheets
{
  public:
    Sheets() = default;
    virtual ~Sheets() = default;
    Q_DISABLE_COPY_MOVE(Sheets)

    virtual QPagedPaintDevice &Device() = 0;
    /// To be called before the painter begins.
    virtual QString Open() = 0;
    /// Why what was painted so far is lost; empty if it is not.
    virtual QString Fault() const = 0;
    /// The painter has ended: releases what it painted.
    virtual QString Release() = 0;
    /// The painter is about to end and nothing is to be released.
    virtual void Abort() = 0;
};

namespace
{

const QString NotAccepted = QStringLiteral("The printer does not accept the page");

/// A file that grows as a PDF is painted, beside the file that it is to replace.
class GrowingFile final : public QIODevice
{
  public:
    GrowingFile(OpenFiles &files, QString path) : m_file(files), m_path(std::move(path)) {}
    Q_DISABLE_COPY_MOVE(GrowingFile)

    QString Open()
    {
        Fail(m_file.OpenForReplacing(m_path));
        QIODevice::open(WriteOnly | Unbuffered);
        return m_fault;
    }
    const QString &Fault() const { return m_fault; }
    QString Commit()
    {
        if (m_fault.isEmpty())
            Fail(m_file.Commit());
        return m_fault;
    }
    void Drop() { m_file.CloseFile(); }
    bool isSequential() const override { return true; }

  protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *bytes, qint64 count) override
    {
        // Behind a gap nothing is of use, and the file need not hold it back.
        if (m_fault.isEmpty()) {
            m_file.WriteInFile(QByteArrayView(bytes, count));
            Fail(m_file.Failure());
        }
        return count;
    }

  private:
    void Fail(const FileResult &failure)
    {
        if (failure)
            m_fault = failure->description;
    }

    ClOutputFile m_file;
    QString m_path;
    QString m_fault;
};

class PdfSheets final : public PrintPaper::Sheets
{
  public:
    PdfSheets(const PrinterChoice &choice, OpenFiles &files)
        : m_file(files, choice.pdfPath), m_writer(&m_file)
    {
        m_writer.setTitle(choice.document);
        m_writer.setCreator(QStringLiteral("Serimonde"));
    }

    QPagedPaintDevice &Device() override { return m_writer; }
    QString Open() override { return m_file.Open(); }
    QString Fault() const override { return m_file.Fault(); }
    QString Release() override { return m_file.Commit(); }
    void Abort() override { m_file.Drop(); }

  private:
    GrowingFile m_file;
    QPdfWriter m_writer;
};

class PrinterSheets final : public PrintPaper::Sheets
{
  public:
    explicit PrinterSheets(std::shared_ptr<QPrinter> printer) : m_printer(std::move(printer)) {}

    QPagedPaintDevice &Device() override { return *m_printer; }
    QString Open() override { return m_printer->isValid() ? QString() : NotAccepted; }
    QString Fault() const override
    {
        const QPrinter::PrinterState state = m_printer->printerState();
        const bool broken = state == QPrinter::Error || state == QPrinter::Aborted;
        return broken ? NotAccepted : QString();
    }
    QString Release() override { return Fault(); }
    void Abort() override { m_printer->abort(); }

  private:
    std::shared_ptr<QPrinter> m_printer;
};

std::shared_ptr<QPrinter> PrinterOf(const PrinterChoice &choice)
{
    if (choice.printer)
        return choice.printer;
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setDocName(choice.document);
    printer->setPageMargins(PrintPaper::UsualMargins(), QPageLayout::Point);
    return printer;
}

std::unique_ptr<PrintPaper::Sheets> MakeSheets(const PrinterChoice &choice, OpenFiles &files)
{
    const std::shared_ptr<QPrinter> printer = PrinterOf(choice);
    QPageLayout layout = printer->pageLayout();
    layout.setOrientation(choice.orientation == PageOrientation::Landscape ? QPageLayout::Landscape
                                                                           : QPageLayout::Portrait);
    std::unique_ptr<PrintPaper::Sheets> sheets;
    if (choice.pdfPath.isEmpty()) {
        printer->setColorMode(choice.colour == PrintColour::Monochrome ? QPrinter::GrayScale
                                                                       : QPrinter::Color);
        sheets = std::make_unique<PrinterSheets>(printer);
    } else {
        sheets = std::make_unique<PdfSheets>(choice, files);
    }
    sheets->Device().setPageLayout(layout);
    return sheets;
}

} // namespace

PrintPaper::PrintPaper(const PrinterChoice &choice, OpenFiles &files)
    : m_sheets(MakeSheets(choice, files))
{
}

PrintPaper::~PrintPaper()
{
    Discard();
}

QSizeF PrintPaper::Size() const
{
    return m_sheets->Device().pageLayout().paintRect(QPageLayout::Point).size() * TwipsPerPoint;
}

qreal PrintPaper::DotsPerTwip() const
{
    constexpr qreal TwipsPerInch = 1440;
    return m_sheets->Device().logicalDpiX() / TwipsPerInch;
}

QPaintDevice &PrintPaper::Device() const
{
    return m_sheets->Device();
}

QString PrintPaper::NextPage()
{
    if (!m_painter.isActive())
        return BeginJob();
    QString fault = m_sheets->Fault();
    if (!fault.isEmpty())
        return fault;
    return m_sheets->Device().newPage() ? m_sheets->Fault() : NotAccepted;
}

QString PrintPaper::BeginJob()
{
    QString fault = m_sheets->Open();
    if (!fault.isEmpty())
        return fault;
    if (m_painter.begin(&m_sheets->Device()))
        return m_sheets->Fault();
    m_sheets->Abort();
    return NotAccepted;
}

QString PrintPaper::Finish()
{
    QString fault = m_painter.isActive() && !m_painter.end() ? NotAccepted : m_sheets->Release();
    if (!fault.isEmpty())
        m_sheets->Abort();
    return fault;
}

void PrintPaper::Discard()
{
    if (!m_painter.isActive())
        return;
    m_sheets->Abort();
    m_painter.end();
}
