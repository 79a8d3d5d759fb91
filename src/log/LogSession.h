// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ClOutputFile.h"
#include "LogNames.h"
#include "Representation.h"
#include "TrafficText.h"

#include <QStringList>

#include <array>
#include <functional>
#include <utility>

/// The files of one log, from its start to its end: one text file for each representation that is
/// wanted. Opened by the window's thread, then written and closed by the log's own.
class LogSession
{
  public:
    /// A file could not be written, or lost text for good.
    using Report =
        std::function<void(Representation form, const QString &path, const Result &result)>;

    /// The order in which log files are looked for, opened and closed.
    static constexpr auto FileOrder = RepresentationsByEditMode;

    LogSession(OpenFiles &files, const LogNames &names, Report report);

    /// Creates or empties the file of the form.
    Result Open(Representation form);

    /// What happened, as text in every open file.
    void Write(const TrafficText::Parts &happened);
    /// Hands everything to the system.
    void Flush();
    struct Closing {
        Result result;      ///< the first failure
        QStringList failed; ///< paths of all files that failed
    };
    /// Closes all files.
    Closing Close();

    const LogNames &Names() const { return m_names; }

  private:
    struct Form {
        explicit Form(OpenFiles &files) : file(files) {}

        ClOutputFile file;
        QByteArray text;     ///< on its way to the file
        qint64 handedOn = 0; ///< characters of the file before it
        qint64 missing = 0;  ///< characters that are lost, and of which the file does not tell yet
    };

    Form &Of(Representation form) { return m_forms[size_t(form)]; }
    /// Both tell whether they reported a failure.
    bool HandOn(Representation form, qsizetype count);
    bool TellOfMissing(Representation form);
    bool Note(Representation form);

    LogNames m_names;
    Report m_report;
    std::array<Form, RepresentationCount> m_forms; ///< by representation
};
