// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LogSession.h"

#include <algorithm>
#include <utility>

namespace
{

/// Text is handed to the file in pieces that end at multiples of this size, which costs the system
/// least.
constexpr qsizetype PieceSize = 64 * 1024;

template <typename Form, size_t... Places>
std::array<Form, sizeof...(Places)> FormsOf(OpenFiles &files, std::index_sequence<Places...>)
{
    return {{(static_cast<void>(Places), Form(files))...}};
}

} // namespace

LogSession::LogSession(OpenFiles &files, const LogNames &names, Report report)
    : m_names(names),
      m_report(std::move(report)),
      m_forms(FormsOf<Form>(files, std::make_index_sequence<RepresentationCount>()))
{
}

Result LogSession::Open(Representation form)
{
    return Of(form).file.OpenFile(m_names.PathOf(form));
}

void LogSession::Write(const TrafficText::Parts &happened)
{
    for (const Representation form : FileOrder) {
        Form &state = Of(form);
        if (!state.file.IsOpen())
            continue;
        TrafficText::Append(state.text, form, happened);
        const qsizetype end = state.text.size();
        HandOn(form, end - std::min(end, (state.handedOn + end) % PieceSize));
    }
}

/// What the file has no room for is missing from then on, to its last character: later text must
/// not stand in the gap as if nothing were missing.
bool LogSession::HandOn(Representation form, qsizetype count)
{
    Form &state = Of(form);
    if (count == 0)
        return false;
    if (!TellOfMissing(form) || !state.file.WritePiece(QByteArrayView(state.text).first(count)))
        state.missing += count;
    state.handedOn += count;
    // What is left moves to the front: to cut it off there would have the buffer made anew.
    std::copy(state.text.cbegin() + count, state.text.cend(), state.text.begin());
    state.text.chop(count);
    return Note(form);
}

/// False while the disk still takes nothing.
bool LogSession::TellOfMissing(Representation form)
{
    Form &state = Of(form);
    if (state.missing == 0)
        return true;
    if (state.file.Flush().Failed())
        return false;
    const QByteArray count = QByteArray::number(std::exchange(state.missing, 0));
    state.file.WritePiece("\r\n[" + count + " bytes missing]\r\n");
    m_report(form, m_names.PathOf(form),
             Failure{QStringLiteral("%1 bytes are missing in it").arg(QString::fromLatin1(count))});
    return true;
}

/// Every write that fails is told; whether a box about it still stands is not known here.
bool LogSession::Note(Representation form)
{
    const Result &state = Of(form).file.State();
    if (state.Failed())
        m_report(form, m_names.PathOf(form), state);
    return state.Failed();
}

void LogSession::Flush()
{
    for (const Representation form : FileOrder) {
        Form &state = Of(form);
        if (!state.file.IsOpen())
            continue;
        const bool told = HandOn(form, state.text.size());
        if (state.file.Flush().Failed() && !told)
            Note(form);
    }
}

LogSession::Closing LogSession::Close()
{
    Closing closing;
    for (const Representation form : FileOrder) {
        Form &state = Of(form);
        if (!state.file.IsOpen())
            continue;
        HandOn(form, state.text.size());
        TellOfMissing(form);
        state.file.CloseFile();
        if (!state.file.State().Failed())
            continue;
        if (closing.failed.isEmpty())
            closing.result = state.file.State();
        closing.failed << m_names.PathOf(form);
    }
    return closing;
}
