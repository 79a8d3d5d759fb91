// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "MainDialogs.h"

#include "MdCommunication.h"
#include "MdFind.h"
#include "MdSequenceEdition.h"
#include "PortFinder.h"
#include "ProgramInfo.h"
#include "RecordSettings.h"
#include "RunState.h"
#include "SequenceLists.h"
#include "SystemInformation.h"
#include "UserPrompts.h"
#include "frmAbout.h"
#include "frmEditAction.h"
#include "frmEditEvent.h"
#include "frmFind.h"
#include "frmMain.h"
#include "frmOptions.h"
#include "frmSessionRecord.h"

#include <optional>
#include <utility>

MainDialogs::MainDialogs(MainDialogParts parts) : m_parts(std::move(parts)) {}

SequenceEditorParts MainDialogs::PartsOfSend()
{
    return {m_parts.sequences,
            m_parts.prompts,
            m_sendMode,
            [this](int index) {
                m_parts.lists.ShowSendRecord(index);
                m_parts.window.SetProjectModified(true);
            },
            [this](int index) {
                m_parts.lists.RemoveSendRow(index);
                m_parts.window.SetProjectModified(true);
            },
            true,
            &m_checksum};
}

SequenceEditorParts MainDialogs::PartsOfReceive()
{
    return {m_parts.sequences,
            m_parts.prompts,
            m_receiveMode,
            [this](int index) {
                m_parts.lists.ShowReceiveRecord(index);
                m_parts.window.SetProjectModified(true);
            },
            [this](int index) {
                m_parts.lists.RemoveReceiveRow(index);
                m_parts.window.SetProjectModified(true);
            },
            m_parts.options.comm.MaySend(),
            &m_checksum};
}

void MainDialogs::EditSendSequence()
{
    frmEditAction(PartsOfSend(), &m_parts.window).exec();
}

void MainDialogs::EditReceiveSequence()
{
    frmEditEvent(PartsOfReceive(), &m_parts.window).exec();
}

bool MainDialogs::HasRoom(int index)
{
    if (index < MdSequenceEdition::Capacity)
        return true;
    m_parts.prompts.ShowMessage(ExclamationMessage(MdSequenceEdition::FullTableText()));
    return false;
}

void MainDialogs::NewSendSequence(const QByteArray &bytes, QWidget &over)
{
    const int index = m_parts.sequences.SendCount();
    if (!HasRoom(index))
        return;
    m_parts.sequences.CurrentSendIndex = index;
    frmEditAction editor(PartsOfSend(), &over);
    editor.Propose(bytes);
    editor.exec();
}

void MainDialogs::NewReceiveSequence(const QByteArray &bytes, QWidget &over)
{
    const int index = m_parts.sequences.ReceiveCount();
    if (!HasRoom(index))
        return;
    m_parts.sequences.CurrentReceiveIndex = index;
    frmEditEvent editor(PartsOfReceive(), &over);
    editor.Propose(bytes);
    editor.exec();
}

void MainDialogs::ShowOptions()
{
    const bool wasRunning = m_parts.communication.OnPorts();
    bool startAgain = false;
    m_parts.communication.ClosePorts();
    if (!m_parts.communication.Running()) {
        frmOptions options(
            {SnapshotOf(m_parts.options), m_parts.displayNext, m_parts.prompts,
             m_parts.options.assigned, m_parts.finder,
             [this](const OptionsValues &confirmed) { StoreOptions(confirmed); },
             [this](const DisplaySettings &display) { m_parts.displayNext = display; }, wasRunning},
            &m_parts.window);
        options.exec();
        startAgain = options.StartAgain() && !m_parts.run.QuitRequested;
    }
    m_parts.window.UpdateStatusPanels();
    if (startAgain)
        m_parts.communication.OpenPorts();
}

void MainDialogs::StoreOptions(const OptionsValues &values)
{
    const bool otherDisplay = m_parts.options.sequences.Display != values.sequences.Display;
    const Result applied = ApplyTo(m_parts.options, values);
    if (otherDisplay)
        m_parts.lists.Refresh();
    m_parts.window.UpdateStatusPanels();
    if (applied.Failed()) {
        m_parts.prompts.ShowMessage(
            CriticalMessage(QStringLiteral("The devices could not be saved. ") + applied.Cause()));
    }
}

void MainDialogs::ShowFind()
{
    frmFind dialog(
        {m_parts.find, m_parts.sequences, [this] { return m_parts.window.ShowSelection(); }},
        &m_parts.window);
    dialog.exec();
}

void MainDialogs::FindNext()
{
    const std::optional<QByteArray> sequence = m_parts.find.ChosenSequence();
    if (!sequence)
        ShowFind();
    else if (m_parts.find.FindNext(m_parts.find.FindTab, *sequence))
        m_parts.window.ShowSelection();
}

void MainDialogs::ShowSessionRecord()
{
    frmSessionRecord dialog(m_parts.record, m_parts.recordSettings.MostMegabytes, &m_parts.window);
    dialog.exec();
}

void MainDialogs::ShowAbout()
{
    frmAbout box({ProgramInfo::Version(), ProgramInfo::SupportEmail(), ProgramInfo::WebSite()},
                 m_parts.shell, m_parts.prompts, &m_parts.window);
    box.ShowSystemInformation = [this] {
        StartSysInfo(m_parts.registry, m_parts.shell, m_parts.prompts);
    };
    box.exec();
}
