// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ClMyPrinter.h"

#include <QByteArrayView>

#include <functional>
#include <optional>

class Clock;
class CommunicationViews;
class MdSequenceEdition;
struct ReceiveSequence;
struct SendSequence;
struct DisplaySettings;
struct ProjectState;
struct SequenceSettings;

/// What printing works with; all of it lives longer than MdPrint.
struct PrintParts {
    const ProjectState &project;
    const DisplaySettings &display;
    const SequenceSettings &form;
    const MdSequenceEdition &sequences;
    CommunicationViews &views;
    UserPrompts &prompts;
    const Clock &clock;
    PrintOutput &output;
    /// Shows the hourglass pointer, or takes it back.
    std::function<void(bool)> setBusy;
};

/// The two print commands.
class MdPrint final
{
  public:
    explicit MdPrint(PrintParts parts) : m_parts(std::move(parts)) {}

    /// The shown view as it looks: its selection, or else all of it.
    void PrintCommunication();
    /// Both sequence tables, as text.
    void PrintProject();

  private:
    Result PrintCopies();
    void PrintCopy();
    void PrintHeader();
    void PrintSendSequences();
    void PrintReceiveSequences();
    void PrintReceiveSequence(const ReceiveSequence &record);
    void PrintHeading(const QString &text);
    void PrintNameAndSequence(int index, QByteArrayView name, QByteArrayView sequence);
    void PrintEmptyLines(int count);
    /// Behind the program title.
    QString Titled(const QString &text) const;
    void ShowFailure(const Result &printed);

    ClMyPrinter &Printer();

    PrintParts m_parts;
    std::optional<ClMyPrinter> m_printer; ///< made on first use and kept
};
