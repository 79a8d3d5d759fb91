// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "EditModeOptions.h"

#include "EditModes.h"
#include "SQEditSequence.h"

#include <QHBoxLayout>
#include <QRadioButton>

namespace
{

constexpr std::array<const char *, RepresentationCount> OptionNames = {
    "OptionAscii", "OptionHexa", "OptionDecimal", "OptionBinary"};

} // namespace

EditModeOptions::EditModeOptions(SQEditSequence &editor, QWidget *parent)
    : QGroupBox(QStringLiteral("Edit Mode"), parent), m_editor(editor)
{
    auto *row = new QHBoxLayout(this);
    for (const Representation r : AllRepresentations) {
        auto *option = new QRadioButton(QString::fromLatin1(RepresentationCaptions[size_t(r)]));
        option->setObjectName(QString::fromLatin1(OptionNames[size_t(r)]));
        connect(option, &QRadioButton::toggled, this, [this, r](bool checked) {
            if (checked)
                Apply(r);
        });
        row->addWidget(option);
        m_options[size_t(r)] = option;
    }
    row->addStretch();
}

void EditModeOptions::Choose(Representation mode)
{
    const size_t number = size_t(mode);
    m_options[number < m_options.size() ? number : 0]->setChecked(true);
}

void EditModeOptions::Apply(Representation mode)
{
    for (const Representation r : AllRepresentations) // Tab leads to the chosen one
        m_options[size_t(r)]->setFocusPolicy(r == mode ? Qt::StrongFocus : Qt::ClickFocus);
    m_editor.SetEditMode(EditModes::OfRepresentation(mode));
    Q_EMIT ModeChosen(mode);
}
