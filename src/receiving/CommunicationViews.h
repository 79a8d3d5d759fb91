// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"
#include "RichTextModel.h"

#include <array>

/// The texts of the communication window: for each representation the view that is shown and the
/// staging box in which new text waits for the main loop.
class CommunicationViews
{
  public:
    RichTextModel &View(Representation r) { return m_views[size_t(r)]; }
    RichTextModel &StagingBox(Representation r) { return m_staging[size_t(r)]; }

    /// Moves what is staged into the views, in the order of the representations.
    void MoveStagedText();

    /// Leaves one blank in each view; staged text stays.
    void ClearViews();

    /// While communication runs, nobody can type into the views.
    void SetCommunicating(bool communicating);

    Representation DisplayedRepresentation = Representation::Ascii;
    /// Where the next search in the shown view begins, as the view's model counts: it stays with
    /// its character when older ones are cut. Before the first character means there, so 0 does.
    qint64 CaretPosition = 0;

  private:
    std::array<RichTextModel, RepresentationCount> m_views;
    std::array<RichTextModel, RepresentationCount> m_staging;
};
