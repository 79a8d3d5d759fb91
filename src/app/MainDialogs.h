// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Checksum.h"
#include "OptionsValues.h"
#include "Representation.h"
#include "SequenceEditorParts.h"

#include <memory>

class CommunicationViews;
class MdCommunication;
class MdFind;
class MdRecord;
class MdSequenceEdition;
class PortFinder;
class QByteArray;
class QWidget;
class SequenceLists;
class Shell;
class SystemRegistry;
class UserPrompts;
class frmMain;
struct DisplaySettings;
struct RecordSettings;
struct RunState;

/// What the dialogs work with; all of it lives longer than MainDialogs.
struct MainDialogParts {
    frmMain &window;
    SequenceLists &lists;
    MdSequenceEdition &sequences;
    MdCommunication &communication;
    MdFind &find;
    MdRecord &record;
    const RecordSettings &recordSettings;
    OptionsSubjects options;
    DisplaySettings &displayNext; ///< colours and attributes of the next start
    std::shared_ptr<const PortFinder> finder;
    UserPrompts &prompts;
    Shell &shell;
    SystemRegistry &registry;
    const RunState &run;
};

/// The modal dialogs of the main window: makes each of what it works with, shows it, and takes
/// over what has become of it.
class MainDialogs
{
  public:
    explicit MainDialogs(MainDialogParts parts);

    /// The record at CurrentSendIndex or CurrentReceiveIndex.
    void EditSendSequence();
    void EditReceiveSequence();
    /// A further one, with these bytes to begin with, over the window that asks for it. If the
    /// table is full, the user is told.
    void NewSendSequence(const QByteArray &bytes, QWidget &over);
    void NewReceiveSequence(const QByteArray &bytes, QWidget &over);
    /// Stops communication first, and starts it again if the user wants it; stays away if it cannot
    /// be stopped.
    void ShowOptions();
    void ShowFind();
    /// Goes on with what the find dialog was left with, or shows it.
    void FindNext();
    void ShowSessionRecord();
    void ShowAbout();

  private:
    SequenceEditorParts PartsOfSend();
    SequenceEditorParts PartsOfReceive();
    bool HasRoom(int index);
    void StoreOptions(const OptionsValues &values);

    MainDialogParts m_parts;
    Representation m_sendMode = Representation::Ascii;    ///< of the send editor, remembered
    Representation m_receiveMode = Representation::Ascii; ///< of the receive editor
    ChecksumRule m_checksum;                              ///< inserted last in either
};
