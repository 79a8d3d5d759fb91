// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ProjectPrintout.h"

#include "ByteLook.h"
#include "ClMyPrinter.h"
#include "MdSequenceEdition.h"
#include "SequenceRows.h"
#include "WorkProgress.h"

#include <utility>

namespace
{

/// What a representation without a meaning acts as; the lists have a rule of their own.
qint16 PrintedForm(qint16 display)
{
    return qint16(RepresentationOf(display, Representation::Decimal));
}

} // namespace

/// A job while it is printed.
class ProjectPrintout::Copies
{
  public:
    Copies(const ProjectPrintout &printout, ClMyPrinter &printer, WorkProgress &progress)
        : m_printout(printout), m_printer(printer), m_progress(progress)
    {
        m_printer.StillWanted = [&progress] { return progress.Wanted(); };
    }
    ~Copies()
    {
        m_printer.StillWanted = [] { return true; };
    }
    Q_DISABLE_COPY_MOVE(Copies)

    void Print();

  private:
    bool GoesOn() const { return m_progress.Wanted() && !m_printer.State().Failed(); }
    void PrintCopy();
    void PrintHeader();
    void PrintSendSequences();
    void PrintReceiveSequences();
    void PrintReceiveSequence(const Watched &watched);
    void PrintHeading(const QString &text);
    void PrintNameAndSequence(qsizetype index, QByteArrayView name, QByteArrayView sequence);
    void PrintEmptyLines(int count);

    const ProjectPrintout &m_printout;
    ClMyPrinter &m_printer;
    WorkProgress &m_progress;
};

ProjectPrintout::ProjectPrintout(Header header, const MdSequenceEdition &sequences, qint16 display)
    : m_header(std::move(header)), m_display(display)
{
    for (int i = 0; i < sequences.SendCount(); ++i)
        m_send << sequences.SendAt(i);
    for (int i = 0; i < sequences.ReceiveCount(); ++i) {
        const ReceiveSequence &record = sequences.ReceiveAt(i);
        const SendSequence *answer = sequences.AnswerOf(record);
        m_receive << Watched{record, answer ? answer->Name : QByteArray()};
    }
}

Result ProjectPrintout::PrintOn(ClMyPrinter &printer, WorkProgress &progress) const
{
    progress.Begin(printer.Copies() * int(m_send.size() + m_receive.size()));
    printer.startPrint();
    Copies(*this, printer, progress).Print();
    const bool wanted = printer.State().Failed() ? progress.Wanted() : progress.Settle();
    if (wanted && !printer.State().Failed())
        printer.endPrint();
    Result printed = wanted ? printer.State() : Result();
    if (printed.Failed() || !wanted)
        printer.abortPrint();
    return printed;
}

void ProjectPrintout::Copies::Print()
{
    for (int copy = 1; copy <= m_printer.Copies() && GoesOn(); ++copy) {
        if (copy > 1)
            m_printer.beginNewPage();
        PrintCopy();
    }
}

void ProjectPrintout::Copies::PrintCopy()
{
    PrintHeader();
    PrintSendSequences();
    PrintEmptyLines(2);
    PrintReceiveSequences();
}

void ProjectPrintout::Copies::PrintHeader()
{
    m_printer.SetFontBold(true);
    m_printer.printText(m_printout.m_header.title);
    m_printer.printText(ByteLook::WithShapes(m_printout.m_header.path));
    m_printer.SetFontBold(false);
    PrintEmptyLines(2);
}

void ProjectPrintout::Copies::PrintSendSequences()
{
    PrintHeading(QStringLiteral("Send Sequences"));
    for (qsizetype i = 0; i < m_printout.m_send.size() && GoesOn(); ++i) {
        const SendSequence &record = m_printout.m_send[i];
        PrintNameAndSequence(i, record.Name, record.Sequence);
        PrintEmptyLines(1);
        m_progress.Step();
    }
}

void ProjectPrintout::Copies::PrintReceiveSequences()
{
    PrintHeading(QStringLiteral("Receive Sequences"));
    for (qsizetype i = 0; i < m_printout.m_receive.size() && GoesOn(); ++i) {
        const Watched &watched = m_printout.m_receive[i];
        PrintNameAndSequence(i, watched.record.Name, watched.record.Sequence);
        PrintReceiveSequence(watched);
        PrintEmptyLines(1);
        m_progress.Step();
    }
}

/// What follows the name and the sequence.
void ProjectPrintout::Copies::PrintReceiveSequence(const Watched &watched)
{
    const ReceiveSequence &record = watched.record;
    m_printer.printText(record.Active != 0 ? QStringLiteral("Receive sequence is active")
                                           : QStringLiteral("Receive sequence is inactive"));
    if (record.Answer > 0) {
        m_printer.printText(QStringLiteral("Respond with the following send sequence: ") +
                            ByteLook::ToShapes(watched.answer));
    }
    if (!record.Comment.isEmpty()) {
        m_printer.printText(QStringLiteral("After receiving the sequence, insert comment: ") +
                            ByteLook::ToShapes(record.Comment));
    }
}

void ProjectPrintout::Copies::PrintHeading(const QString &text)
{
    m_printer.SetFontBold(true);
    m_printer.printText(text);
    m_printer.SetFontBold(false);
    m_printer.printVertLine(0);
    PrintEmptyLines(1);
}

void ProjectPrintout::Copies::PrintNameAndSequence(qsizetype index, QByteArrayView name,
                                                   QByteArrayView sequence)
{
    m_printer.SetFontBold(true);
    m_printer.printText(QString::number(index) + QLatin1String(" - ") + ByteLook::ToShapes(name));
    m_printer.SetFontBold(false);
    m_printer.printText(
        ByteLook::ToShapes(SequenceRows::ListText(PrintedForm(m_printout.m_display), sequence)));
}

void ProjectPrintout::Copies::PrintEmptyLines(int count)
{
    for (int i = 0; i < count; ++i)
        m_printer.printText({});
}
