// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommunicationViews.h"
#include "MdFind.h"
#include "MdSequenceEdition.h"
#include "RichTextBox.h"
#include "support/ScriptedPrompts.h"

#include <QElapsedTimer>
#include <QImage>
#include <QTextCursor>
#include <QTextEdit>

#include <benchmark/benchmark.h>

#include <array>
#include <memory>

namespace
{

constexpr QSize ViewSize(900, 600);
constexpr TextStyle Blue = {0xFF0000};
/// What one pass brings to each view, without line breaks.
const QByteArray NewText = QByteArray("41 0D 0A 7F ").repeated(64);
const QByteArray FullText = QByteArray("52 1B 3C 00 ").repeated(128000 / 12 + 1).first(128000);

/// Paints the whole of what the box shows.
void Paint(QAbstractScrollArea &box)
{
    static QImage picture(ViewSize, QImage::Format_RGB32);
    box.viewport()->render(&picture);
    benchmark::DoNotOptimize(picture.constBits());
}

/// The program's own four views, full, the first one shown.
class OwnViews
{
  public:
    OwnViews()
    {
        for (const Representation r : AllRepresentations) {
            m_views.View(r).SetText(FullText, Blue);
            m_boxes[size_t(r)] = std::make_unique<RichTextBox>(m_views.View(r));
            m_boxes[size_t(r)]->resize(ViewSize);
        }
        m_boxes[0]->show();
        Paint(*m_boxes[0]);
    }

    void Pass()
    {
        for (const Representation r : AllRepresentations)
            m_views.StagingBox(r).AppendStyled(NewText, Blue);
        m_views.MoveStagedText();
        Paint(*m_boxes[0]);
    }

  private:
    CommunicationViews m_views;
    std::array<std::unique_ptr<RichTextBox>, RepresentationCount> m_boxes;
};

/// The same on four stock text boxes.
class StockViews
{
  public:
    StockViews()
    {
        for (auto &box : m_boxes) {
            box = std::make_unique<QTextEdit>();
            box->setReadOnly(true);
            box->setUndoRedoEnabled(false);
            box->setFont(QFont(QStringLiteral("Liberation Mono"), 10));
            box->resize(ViewSize);
            box->setPlainText(QString::fromLatin1(FullText));
        }
        m_boxes[0]->show();
        m_boxes[0]->moveCursor(QTextCursor::End);
        Paint(*m_boxes[0]);
    }

    void Pass()
    {
        for (auto &box : m_boxes)
            Append(*box);
        Paint(*m_boxes[0]);
    }

  private:
    static void Append(QTextEdit &box)
    {
        QTextCursor cursor(box.document());
        cursor.movePosition(QTextCursor::End);
        QTextCharFormat format;
        format.setForeground(Qt::blue);
        cursor.insertText(QString::fromLatin1(NewText), format);
        if (box.document()->characterCount() > 128000) {
            cursor.movePosition(QTextCursor::Start);
            cursor.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, 2048);
            cursor.removeSelectedText();
        }
        box.moveCursor(QTextCursor::End);
    }

    std::array<std::unique_ptr<QTextEdit>, RepresentationCount> m_boxes;
};

template <typename Views> double SecondsOfPass(Views &views)
{
    QElapsedTimer timer;
    timer.start();
    views.Pass();
    return double(timer.nsecsElapsed()) * 1e-9;
}

/// One pass of the main loop that moves 768 new characters into each of four full views, one of
/// them shown and painted. The time is the own views'; the counters compare with stock boxes,
/// whose passes alternate with ours.
void MainLoopPass(benchmark::State &state)
{
    OwnViews own;
    StockViews stock;
    double ownSeconds = 0;
    double stockSeconds = 0;
    for (auto _ : state) {
        const double seconds = SecondsOfPass(own);
        ownSeconds += seconds;
        stockSeconds += SecondsOfPass(stock);
        state.SetIterationTime(seconds);
    }
    state.counters["stock_ms"] = 1000 * stockSeconds / double(state.iterations());
    state.counters["ratio"] = stockSeconds / ownSeconds;
}

/// A new width lays a full view out anew.
void Relayout(benchmark::State &state)
{
    CommunicationViews views;
    views.View(Representation::Hex).SetText(FullText, Blue);
    RichTextBox box(views.View(Representation::Hex));
    box.show();
    int width = 600;
    for (auto _ : state) {
        width = width == 600 ? 900 : 600;
        box.resize(width, 600);
        Paint(box);
    }
}

/// One search step through a full view for three bytes that match nearly everywhere, and at last
/// at its end.
void Search(benchmark::State &state, Representation shown, const QByteArray &almost,
            const QByteArray &end, const QByteArray &sequence)
{
    const MdSequenceEdition tables;
    CommunicationViews views;
    ScriptedPrompts prompts;
    MdFind find(tables, views, prompts);
    views.DisplayedRepresentation = shown;
    views.View(shown).SetText(
        almost.repeated(128000 / almost.size()).first(128000 - end.size()) + end, Blue);
    for (auto _ : state) {
        views.CaretPosition = 0;
        if (!find.FindNext(FindKind::Defined, sequence))
            state.SkipWithError("not found");
    }
}

BENCHMARK_CAPTURE(Search, Hex, Representation::Hex, "0D 0D 0A 0D 0D 0B ", "0D 0D 0D ", "\r\r\r")
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Search, AsciiAnyCase, Representation::Ascii, "\xC4\xE4x\xE4\xC4y", "\xC4\xE4\xC4",
                  "\xE4\xC4\xE4")
    ->Unit(benchmark::kMillisecond);
BENCHMARK(MainLoopPass)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(60);
BENCHMARK(Relayout)->Unit(benchmark::kMillisecond);

} // namespace
