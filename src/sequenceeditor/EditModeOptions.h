// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Representation.h"

#include <QGroupBox>

#include <array>

class QRadioButton;
class SQEditSequence;

/// The options of the form in which a sequence is typed; they set the editor's edit mode.
class EditModeOptions final : public QGroupBox
{
    Q_OBJECT

  public:
    /// The editor lives as long as the options.
    explicit EditModeOptions(SQEditSequence &editor, QWidget *parent = nullptr);

    /// Anything that is no representation is taken for ASCII.
    void Choose(Representation mode);
    /// Tab leads from the field to the options, and from there to the editor.
    void PlaceBehind(QWidget &field);

  Q_SIGNALS:
    void ModeChosen(Representation mode);

  private:
    void Apply(Representation mode);

    SQEditSequence &m_editor;
    std::array<QRadioButton *, RepresentationCount> m_options{};
};
