// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CommunicationViews.h"

void CommunicationViews::MoveStagedText()
{
    for (const Representation r : AllRepresentations)
        View(r).MoveViewContent(StagingBox(r));
}

void CommunicationViews::ClearViews()
{
    for (RichTextModel &view : m_views)
        view.SetText(" ", TextStyle{});
}

void CommunicationViews::SetCommunicating(bool communicating)
{
    for (RichTextModel &view : m_views)
        view.SetReadOnly(communicating);
}
