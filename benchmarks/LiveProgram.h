// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "CommConfiguration.h"
#include "CommunicationViews.h"
#include "DisplaySettings.h"
#include "LineLoop.h"
#include "MainLoop.h"
#include "MdCommunication.h"
#include "MdLogFile.h"
#include "MdRecord.h"
#include "MdSequenceEdition.h"
#include "MdTraffic.h"
#include "PortDevices.h"
#include "RecordSettings.h"
#include "RunState.h"
#include "SerialPort.h"
#include "SerialPortHub.h"
#include "StampText.h"
#include "SystemFiles.h"
#include "SystemPortName.h"
#include "SystemRecordFolder.h"
#include "ThreadTurns.h"
#include "WindowSettings.h"
#include "frmMain.h"
#include "support/FixedClock.h"
#include "support/MemoryStore.h"
#include "support/ScriptedPrompts.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

/// A checksum of what has gone through the receive path, in its order, on its way to the log.
class ChecksumLog final : public CommunicationLog
{
  public:
    std::atomic<qint64> bytes = 0;
    std::atomic<quint64> checksum = 0;
    CommunicationLog *next = nullptr;

    static quint64 Add(quint64 checksum, QByteArrayView text)
    {
        for (const char byte : text)
            checksum = checksum * 1099511628211U + uchar(byte) + 1;
        return checksum;
    }

    void Take(const TrafficEvent &event) override
    {
        next->Take(event);
        bytes += event.bytes.size();
        checksum = Add(checksum, event.bytes);
    }
    bool HasRoom() const override { return next->HasRoom(); }
    void UpdateLogCommands() override { next->UpdateLogCommands(); }
    void StopLog() override { next->StopLog(); }
};

/// The program's window, loop, communication and real ports, without a user.
class LiveProgram
{
  public:
    struct {
        CommConfiguration comm;
        DisplaySettings display;
        StampSettings stamp;
        LogSettings log;
        WindowSettings window;
        ListSettings lists;
    } settings;
    RunState run;
    MdSequenceEdition tables;
    CommunicationViews views;
    ChecksumLog log;
    ScriptedPrompts prompts;
    FixedClock clock;
    MemoryStore store;
    PortDevices devices{store, SystemPortName};
    SerialPortHub hub;
    LineLoop lines;
    SerialPort portA{lines, hub, devices};
    SerialPort portB{lines, hub, devices};
    MdCommunication communication{{settings.comm, settings.display, settings.stamp, tables, &views,
                                   log, prompts, clock, portA, portB, lines}};
    SystemFiles system;
    OpenFiles files{system};
    MdLogFile logFile{
        {settings.log, prompts, files, run, [this] { return communication.Running(); }}};
    MainLoop loop{run, communication};
    frmMain window{
        {settings.comm, settings.display, settings.window, settings.lists, views, run, {}}};
    RecordSettings recordSettings;
    QString captureFolder;
    std::unique_ptr<MdRecord> record; ///< null if there is none
    TrafficWindowSettings trafficSettings;
    std::unique_ptr<MdTraffic> traffic; ///< likewise
    std::vector<double> passes;         ///< seconds from the start of one pass to that of the next

    /// Opens channel 1, and channel 2 as well if it is given a device, so that answers to what it
    /// says go out on channel 1; with a log in all four forms if it is given a name, and with the
    /// session's record if it is given a folder.
    explicit LiveProgram(const QString &device, const QString &logName = {},
                         const QString &secondDevice = {}, const QString &recordFolder = {})
    {
        ThreadTurns::TakeLong();
        if (!recordFolder.isEmpty())
            Record(recordFolder);
        log.next = &logFile;
        logFile.RoomAgain = [this] { communication.Resume(); };
        settings.log.files.fill(true);
        if (!logName.isEmpty())
            logFile.Arm(logName, false);
        devices.AssignForRun(1, device);
        if (!secondDevice.isEmpty()) {
            devices.AssignForRun(2, secondDevice);
            settings.comm.run.mode = CommMode::MonitorReceiveAndModify;
        }
        window.resize(1000, 700);
        window.show();
        communication.OpenPorts();
    }

    void Record(const QString &folder)
    {
        record = std::make_unique<MdRecord>(
            RecordParts{recordSettings, captureFolder, files, prompts, clock, run},
            std::make_shared<SystemRecordFolder>(folder), QStringLiteral("benchmark"));
        record->ApplySettings();
        communication.Stream().Feed(record->Consumer());
    }

    /// Shows the record in the window "Traffic", with the newest telegram in sight.
    void ShowTraffic()
    {
        traffic = std::make_unique<MdTraffic>(MdTrafficParts{
            *record, settings.display, trafficSettings, [] { return QStringList(); }});
        traffic->Show();
    }

    /// Passes of the main loop, each noted with its pause, until the work is done.
    template <typename Done> void RunUntil(Done done)
    {
        QElapsedTimer pass;
        while (!done()) {
            pass.start();
            QEventLoop events;
            QTimer::singleShot(loop.Pass(), Qt::PreciseTimer, &events, &QEventLoop::quit);
            events.exec();
            passes.push_back(double(pass.nsecsElapsed()) * 1e-9);
        }
    }
};
