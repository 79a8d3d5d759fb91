// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficWork.h"

#include "TrafficActions.h"
#include "TrafficBookmarking.h"
#include "TrafficFiltering.h"
#include "TrafficFinding.h"
#include "TrafficResponses.h"
#include "frmTraffic.h"

TrafficWork::TrafficWork(frmTraffic &window, const TrafficWorkParts &parts)
    : m_exporting(parts.exporting),
      m_actions(std::make_unique<TrafficActions>(window)),
      m_finding(std::make_unique<TrafficFinding>(window, *m_actions, parts.SequenceNames)),
      m_filtering(std::make_unique<TrafficFiltering>(window, *m_actions, parts.SequenceNames,
                                                     [this] { return m_captures->TwoChannels(); })),
      m_bookmarking(std::make_unique<TrafficBookmarking>(window, *m_actions, *m_finding,
                                                         parts.exporting.prompts)),
      m_copying(std::make_unique<TrafficCopying>(window, *m_actions, m_exporting, parts.copying)),
      m_captures(
          std::make_unique<TrafficCaptures>(window, *m_actions, *m_bookmarking, parts.captures)),
      m_responses(std::make_unique<TrafficResponses>(window, *m_actions, *m_finding, m_exporting,
                                                     parts.responses))
{
    m_actions->On(TrafficCommand::Close, [&window] { window.close(); });
}

TrafficWork::~TrafficWork() = default;

bool TrafficWork::AskSaveBookmarks()
{
    return m_captures->AskSaveBookmarks();
}

bool TrafficWork::Hangs() const
{
    return m_exporting.Hangs();
}

void TrafficWork::StorePlace()
{
    m_responses->StorePlace();
}
