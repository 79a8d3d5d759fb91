// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PrintPaper.h"

#include "ClOutputFile.h"

#include <QIODevice>
#include <QPageLayout>
#include <QPdfWriter>
#include <QPrinter>

#include <utility>

class PrintPaper::Sheets
{
  public:
    Sheets() = default;
    virtual ~Sheets() = default;
    Q_DISABLE_COPY_MOVE(Sheets)

    virtual QPagedPaintDevice &Device() = 0;
    /// Whether what is painted stays in the program's hands until Release.
    virtual bool CanBeTakenBack() const = 0;
    /// To be called before the painter begins.
    virtual Result Open() = 0;
    /// Fails if what was painted so far is lost.
    virtual Result State() const = 0;
    /// The painter has ended: releases what it painted.
    virtual Result Release() = 0;
    /// The painter is about to end and nothing is to be released.
    virtual void Abort() = 0;
};

namespace
{

Failure NotAccepted()
{
    return {QStringLiteral("The printer does not accept the page")};
}

/// A file that grows as a PDF is painted, beside the file that it is to replace.
class GrowingFile final : public QIODevice
{
  public:
    GrowingFile(OpenFiles &files, QString path) : m_file(files), m_path(std::move(path)) {}
    Q_DISABLE_COPY_MOVE(GrowingFile)

    Result Open()
    {
        m_state = m_file.OpenForReplacing(m_path);
        QIODevice::open(WriteOnly | Unbuffered);
        return m_state;
    }
    const Result &State() const { return m_state; }
    Result Commit()
    {
        if (!m_state.Failed())
            m_state = m_file.Commit();
        return m_state;
    }
    void Drop() { m_file.CloseFile(); }
    bool isSequential() const override { return true; }

  protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *bytes, qint64 count) override
    {
        // Behind a gap nothing is of use, and the file need not hold it back.
        if (!m_state.Failed()) {
            m_file.WriteInFile(QByteArrayView(bytes, count));
            m_state = m_file.State();
        }
        return count;
    }

  private:
    ClOutputFile m_file;
    QString m_path;
    Result m_state;
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
    bool CanBeTakenBack() const override { return true; }
    Result Open() override { return m_file.Open(); }
    Result State() const override { return m_file.State(); }
    Result Release() override { return m_file.Commit(); }
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
    bool CanBeTakenBack() const override { return false; }
    Result Open() override { return m_printer->isValid() ? Result() : NotAccepted(); }
    Result State() const override
    {
        const QPrinter::PrinterState state = m_printer->printerState();
        const bool broken = state == QPrinter::Error || state == QPrinter::Aborted;
        return broken ? NotAccepted() : Result();
    }
    Result Release() override { return State(); }
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

Result PrintPaper::NextPage()
{
    if (m_sheets->CanBeTakenBack())
        return BeginPage();
    m_pages.emplace_back();
    return m_pages.size() == 1 ? m_sheets->Open() : Result();
}

void PrintPaper::Draw(Drawing drawing)
{
    if (m_sheets->CanBeTakenBack())
        drawing(m_painter);
    else
        m_pages.back().push_back(std::move(drawing));
}

Result PrintPaper::BeginPage()
{
    if (!m_painter.isActive())
        return BeginJob();
    if (Result soFar = m_sheets->State(); soFar.Failed())
        return soFar;
    return m_sheets->Device().newPage() ? m_sheets->State() : NotAccepted();
}

Result PrintPaper::BeginJob()
{
    if (Result opened = m_sheets->Open(); opened.Failed())
        return opened;
    if (m_painter.begin(&m_sheets->Device()))
        return m_sheets->State();
    m_sheets->Abort();
    return NotAccepted();
}

Result PrintPaper::DrawPages()
{
    for (const Page &page : std::exchange(m_pages, {})) {
        if (Result begun = BeginPage(); begun.Failed())
            return begun;
        for (const Drawing &draw : page)
            draw(m_painter);
    }
    return {};
}

Result PrintPaper::Finish()
{
    if (Result drawn = DrawPages(); drawn.Failed()) {
        Discard();
        return drawn;
    }
    const bool ended = !m_painter.isActive() || m_painter.end();
    Result finished = ended ? m_sheets->Release() : NotAccepted();
    if (finished.Failed())
        m_sheets->Abort();
    return finished;
}

void PrintPaper::Discard()
{
    m_pages.clear();
    if (!m_painter.isActive())
        return;
    m_sheets->Abort();
    m_painter.end();
}
