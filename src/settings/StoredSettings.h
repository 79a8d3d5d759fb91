// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

class QString;
struct CaptureSettings;
struct CommSettings;
struct DisplaySettings;
struct ListSettings;
struct LogSettings;
struct PrintSettings;
struct RecordSettings;
struct ResponseWindowSettings;
struct SendLineSettings;
struct SequenceSettings;
struct StampSettings;
struct TrafficWindowSettings;
struct ViewSettings;
struct WindowSettings;

/// Where the stored settings live: with the subjects that own them. A program that lacks a subject
/// leaves it null; its settings are then neither read nor written.
struct StoredSettings {
    CommSettings *comm = nullptr;
    WindowSettings *window = nullptr;
    ListSettings *lists = nullptr;
    DisplaySettings *display = nullptr;     ///< in force
    DisplaySettings *displayNext = nullptr; ///< for the next start; this copy is saved
    StampSettings *stamp = nullptr;
    LogSettings *log = nullptr;
    SequenceSettings *sequences = nullptr;
    QString *projectFolder = nullptr; ///< with trailing separator
    ViewSettings *view = nullptr;
    PrintSettings *print = nullptr;
    CaptureSettings *captures = nullptr;
    RecordSettings *record = nullptr;
    TrafficWindowSettings *traffic = nullptr;
    SendLineSettings *sendLine = nullptr;
    ResponseWindowSettings *responses = nullptr;
};
