// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "EditModeOptions.h"

#include "SQEditSequence.h"

#include <QHBoxLayout>
#include <QRadioButton>

EditModeOptions::EditModeOptions(SQEditSequence &editor, QWidget *parent)
    : QGroupBox(QStringLiteral("Edit Mode"), parent), m_editor(editor)
{
    // Inside another group it would be read with that one's title.
    setAccessibleName(title());
    auto *row = new QHBoxLayout(this);
    const QMargins margins = row->contentsMargins();
    row->setContentsMargins(margins.left(), margins.top() / 2, margins.right(),
                            margins.bottom() / 2);
    for (const Representation r : AllRepresentations) {
        auto *option = new QRadioButton(QString::fromLatin1(RowOf(r).caption));
        option->setObjectName(QString::fromLatin1(RowOf(r).optionName));
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
    const Representation chosen = RepresentationOf(int(mode), Representation::Ascii);
    m_options[size_t(chosen)]->setChecked(true);
}

void EditModeOptions::PlaceBehind(QWidget &field)
{
    QWidget *before = &field;
    for (QRadioButton *option : m_options) {
        setTabOrder(before, option);
        before = option;
    }
    setTabOrder(before, &m_editor);
}

void EditModeOptions::Apply(Representation mode)
{
    for (const Representation r : AllRepresentations) // Tab leads to the chosen one
        m_options[size_t(r)]->setFocusPolicy(r == mode ? Qt::StrongFocus : Qt::ClickFocus);
    m_editor.SetEditMode(RowOf(mode).editMode);
    Q_EMIT ModeChosen(mode);
}
