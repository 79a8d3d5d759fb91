// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommConfiguration.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "MdCommunication.h"
#include "StampText.h"
#include "support/FixedClock.h"
#include "support/RecordingLog.h"
#include "support/ScriptedPort.h"
#include "support/ScriptedPrompts.h"
#include "support/WatchSequence.h"

/// Communication with scripted ports, and what it told the window.
class CommunicationBench
{
  public:
    struct {
        CommConfiguration comm;
        DisplaySettings display;
        StampSettings stamp;
    } settings;
    MdSequenceEdition tables;
    CommunicationViews views;
    RecordingLog log;
    ScriptedPrompts prompts;
    FixedClock clock;
    ScriptedPort portA;
    ScriptedPort portB;
    ScriptedLines lines;
    MdCommunication communication{{settings.comm, settings.display, settings.stamp, tables, &views,
                                   log, prompts, clock, portA, portB, lines}};
    QStringList statusTexts;
    QList<MdCommunication::ToolbarState> toolbarStates;

    CommunicationBench()
    {
        QObject::connect(&communication, &MdCommunication::PortStatusChanged, &communication,
                         [this](const QString &text) { statusTexts << text; });
        QObject::connect(&communication, &MdCommunication::ToolbarStateChanged, &communication,
                         [this](MdCommunication::ToolbarState s) { toolbarStates << s; });
    }

    /// What happens from here on happens at the clock's time.
    void SetTimes()
    {
        for (ScriptedPort *port : {&portA, &portB})
            port->line.now.wall = clock.now.toMSecsSinceEpoch() * 1'000'000;
    }

    void Open(CommMode mode)
    {
        SetTimes();
        settings.comm.stored.CommType = qint32(mode);
        communication.OpenPorts();
    }

    void Watch(const QByteArray &sequence, const QByteArray &comment, const QByteArray &answer = {})
    {
        WatchSequence(tables, sequence, comment, answer);
    }

    /// What is staged in ASCII, in runs of equal style: "0:" and "1:" for the directions, "c:"
    /// for the comment style, joined by "|".
    QByteArray StagedAscii()
    {
        communication.StageTraffic();
        return Runs(views.StagingBox(Representation::Ascii));
    }

    QByteArray Staged(Representation r)
    {
        communication.StageTraffic();
        return views.StagingBox(r).Bytes().toByteArray();
    }

    QByteArray Runs(const RichTextModel &model) const
    {
        QByteArray text;
        qint64 start = model.Begin();
        for (const RichTextModel::StyleRun &run : model.Runs()) {
            const char *name = run.style == settings.display.styles[0]   ? "0:"
                               : run.style == settings.display.styles[1] ? "1:"
                                                                         : "c:";
            text += (text.isEmpty() ? "" : "|") + QByteArray(name);
            text += model.Bytes().sliced(start - model.Begin(), run.end - start);
            start = run.end;
        }
        return text;
    }
};
