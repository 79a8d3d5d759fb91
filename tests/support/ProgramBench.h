// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommunicationViews.h"
#include "MdMain.h"
#include "frmMain.h"
#include "support/FixedClock.h"
#include "support/MemoryRecordFolder.h"
#include "support/MemoryRecoveryFolder.h"
#include "support/MemoryRegistry.h"
#include "support/MemoryStore.h"
#include "support/OptionsDesk.h"
#include "support/RecordingShell.h"
#include "support/ScriptedPrompts.h"
#include "support/WatchSequence.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QList>
#include <QPointer>
#include <QTimer>
#include <QToolBar>

/// The whole program with real ports, an own settings store and a scripted door for messages. A
/// run is a list of steps; each acts, then waits inside the main loop until its goal is met.
class ProgramBench
{
  public:
    MemoryStore store;
    ScriptedPrompts prompts;
    FixedClock clock;
    RecordingShell shell;
    MemoryRegistry registry;
    MemoryRecoveryFolder recovery;
    std::shared_ptr<MemoryRecordFolder> record = std::make_shared<MemoryRecordFolder>();
    CommandLine line;
    std::unique_ptr<MdMain> program;
    bool stuck = false; ///< a goal was not met in time

    struct Step {
        std::function<void()> act = [] {};
        std::function<bool()> goal = [] { return true; };
    };

    /// Runs the program through the steps, then ends it unasked. Returns the exit status.
    int Run(QList<Step> steps, int millisecondsPerStep = 20000)
    {
        program = std::make_unique<MdMain>(
            MdMain::World{store, prompts, clock, shell, registry, recovery, record}, line);
        QTimer watch;
        QElapsedTimer sinceAct;
        bool acted = false;
        QObject::connect(&watch, &QTimer::timeout, program.get(), [&] {
            if (!steps.isEmpty() && !acted) {
                acted = true;
                sinceAct.start();
                steps.first().act();
                return;
            }
            if (!steps.isEmpty() && !steps.first().goal()) {
                stuck = sinceAct.hasExpired(millisecondsPerStep);
                if (!stuck)
                    return;
                steps.clear();
            }
            if (!steps.isEmpty())
                steps.removeFirst();
            acted = false;
            if (steps.isEmpty() && program->Window()) {
                watch.stop();
                program->CloseUnasked();
            }
        });
        watch.start(1);
        return program->Run();
    }

    void AssignPort(int number, const QString &device) { line.ports[number] = device; }

    /// By its place, from 1 on, separators included.
    QAction *ToolbarButton(int place)
    {
        return program->Window()->findChild<QToolBar *>("tbToolBar")->actions()[place - 1];
    }
    RichTextModel &View(Representation r) { return program->Views().View(r); }
    /// All that the view was ever given, as far as it still holds it.
    QByteArray Shown(Representation r = Representation::Ascii)
    {
        return View(r).Bytes().toByteArray();
    }
    /// Waits until the ports are open.
    Step Started()
    {
        return {.goal = [this] { return Running(); }};
    }
    bool Running() { return program->Communication().Running(); }

    /// Opens the options and acts in them; a dialog that is then still open is cancelled.
    void InOptions(const std::function<void(const OptionsDesk &)> &act)
    {
        QTimer::singleShot(0, program.get(), [act] {
            const QPointer<QWidget> form = QApplication::activeModalWidget();
            act(OptionsDesk{*form});
            if (form && form->isVisible())
                form->close();
        });
        program->Execute(Command::Options);
    }

    void Watch(const QByteArray &sequence, const QByteArray &comment, const QByteArray &answer)
    {
        WatchSequence(program->Sequences(), sequence, comment, answer);
    }
};
