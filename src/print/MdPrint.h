// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ClMyPrinter.h"

#include <functional>
#include <optional>

class Clock;
class CommunicationViews;
class MdSequenceEdition;
class WorkProgress;
struct DisplaySettings;
struct PrintSettings;
struct ProjectState;
struct SequenceSettings;

/// What printing works with; all of it lives longer than MdPrint.
struct PrintParts {
    const ProjectState &project;
    const DisplaySettings &display;
    const SequenceSettings &form;
    const MdSequenceEdition &sequences;
    CommunicationViews &views;
    PrintSettings &settings;
    UserPrompts &prompts;
    const Clock &clock;
    PrintOutput &output;
    /// Shows the hourglass pointer, or takes it back.
    std::function<void(bool)> setBusy;
};

/// The two print commands. Both print a copy, on a thread of its own.
class MdPrint final
{
  public:
    explicit MdPrint(PrintParts parts) : m_parts(std::move(parts)) {}

    /// The shown view as it looks: its selection, or else all of it.
    void PrintCommunication();
    /// Both sequence tables, as text.
    void PrintProject();

    /// The program ends, and a printout has not ended in time. It uses this object and what it
    /// works with until the process is gone.
    bool Hangs() const { return m_hangs; }

  private:
    ViewPrintout CopyOfView(const PrinterChoice &choice) const;
    using Printing = std::function<Result(WorkProgress &progress)>;
    Result Print(const QString &document, const Printing &print);
    /// Behind the program title.
    QString Titled(const QString &text) const;
    QString Today() const;
    /// The file that is proposed for a PDF, beside the project if it has a place.
    QString PdfPath(const QString &kind) const;
    void ShowFailure(const Result &printed);

    ClMyPrinter &Printer();

    PrintParts m_parts;
    std::optional<ClMyPrinter> m_printer; ///< made on first use and kept
    bool m_printing = false;
    bool m_hangs = false;
};
