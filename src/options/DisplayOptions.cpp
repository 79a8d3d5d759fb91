// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DisplayOptions.h"

#include "ColourBox.h"
#include "IdleLook.h"
#include "UserPrompts.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

#include <utility>

namespace
{

struct AttributeColumn {
    const char *caption;
    const char *prefix; ///< of the names of its check boxes
    bool TextStyle::*flag;
};

constexpr std::array<AttributeColumn, 3> AttributeColumns = {
    {{"Bold", "CheckBld", &TextStyle::bold},
     {"Italic", "CheckItl", &TextStyle::italic},
     {"Underline", "CheckUndrln", &TextStyle::underline}}};

struct StyleRow {
    const char *name; ///< of its colour box
    const char *caption;
    const char *suffix; ///< of the names of its check boxes
    const char *subject;
};

/// By StyleIndex.
constexpr std::array<StyleRow, StyleIndex::Count> StyleRows = {
    {{"PicOp1PicDir1Color", "Channel 1 Text Color", "Dir1", "Channel 1"},
     {"PicOp1PicDir2Color", "Channel 2 Text Color", "Dir2", "Channel 2"},
     {"PicOp1PicCmtColor", "Comments Text Color", "Cmt", "Comments"}}};

struct StampRow {
    const char *name;
    const char *caption;
    bool StampSettings::*flag;
};

constexpr std::array<StampRow, 3> StampRows = {
    {{"PicOp1CheckDateStamp", "Date Stamp", &StampSettings::Date},
     {"PicOp1CheckTimeStamp", "Time Stamp", &StampSettings::Time},
     {"PicOp1CheckStampReturnToLine", "Line Break before the Date/Time Stamp",
      &StampSettings::NewLine}}};

QString Text(const char *latin)
{
    return QString::fromLatin1(latin);
}

} // namespace

DisplayOptions::DisplayOptions(const DisplaySettings &display, UserPrompts &prompts,
                               std::function<void(const DisplaySettings &)> displayChosen)
    : m_display(display), m_prompts(prompts), m_displayChosen(std::move(displayChosen))
{
    auto *column = new QVBoxLayout(this);
    MakeColours(column);
    MakeStamps(column);
    column->addStretch();
}

void DisplayOptions::MakeColours(QVBoxLayout *column)
{
    auto *frame = new QGroupBox(QStringLiteral("Communication Window Display Options"));
    auto *rows = new QVBoxLayout(frame);
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(16);
    grid->addWidget(new QLabel(QStringLiteral("Background Color")), 0, 0);
    grid->addWidget(MakeColour("PicOp1PicDispBackColor", "Background Color", m_display.DispBack), 0,
                    1);
    for (size_t i = 0; i < AttributeColumns.size(); ++i)
        grid->addWidget(new QLabel(Text(AttributeColumns[i].caption)), 0, int(i) + 2,
                        Qt::AlignHCenter);
    for (int style = 0; style < StyleIndex::Count; ++style)
        MakeStyle(grid, style);
    grid->setColumnStretch(int(AttributeColumns.size()) + 2, 1);
    auto *note = new QLabel(
        QStringLiteral("The changes will take effect after restarting the application."));
    note->setObjectName(QStringLiteral("PicOp1lblColorNotes"));
    note->setWordWrap(true);
    rows->addLayout(grid);
    rows->addSpacing(4);
    rows->addWidget(note);
    column->addWidget(frame);
}

void DisplayOptions::MakeStyle(QGridLayout *grid, int style)
{
    const StyleRow &row = StyleRows[size_t(style)];
    TextStyle &shown = m_display.styles[size_t(style)];
    grid->addWidget(new QLabel(Text(row.caption)), style + 1, 0);
    grid->addWidget(MakeColour(row.name, row.caption, shown.colour), style + 1, 1);
    for (size_t i = 0; i < AttributeColumns.size(); ++i) {
        const AttributeColumn &attribute = AttributeColumns[i];
        bool &flag = shown.*attribute.flag;
        auto *check = new QCheckBox;
        check->setObjectName(Text(attribute.prefix) + Text(row.suffix));
        check->setAccessibleName(Text(row.subject) + u' ' + Text(attribute.caption));
        check->setChecked(flag);
        connect(check, &QCheckBox::toggled, this, [this, &flag](bool checked) {
            flag = checked;
            m_displayChosen(m_display);
        });
        grid->addWidget(check, style + 1, int(i) + 2, Qt::AlignHCenter);
    }
}

ColourBox *DisplayOptions::MakeColour(const char *name, const char *caption, qint32 &colour)
{
    auto *box = new ColourBox(name, caption);
    box->SetColour(colour);
    connect(box, &QPushButton::clicked, this, [this, box, caption, &colour] {
        const std::optional<qint32> chosen = m_prompts.ChooseColour(colour, Text(caption));
        if (!chosen)
            return;
        colour = *chosen;
        box->SetColour(colour);
        m_displayChosen(m_display);
    });
    return box;
}

void DisplayOptions::MakeStamps(QVBoxLayout *column)
{
    auto *frame = new QGroupBox(QStringLiteral("Date/Time Stamp"));
    auto *rows = new QVBoxLayout(frame);
    auto *explanation =
        new QLabel(QStringLiteral("Add the following information when the data flow switches "
                                  "between channel 1 and channel 2:"));
    explanation->setWordWrap(true);
    rows->addWidget(explanation);
    for (size_t i = 0; i < StampRows.size(); ++i) {
        m_stamps[i] = new QCheckBox(Text(StampRows[i].caption));
        m_stamps[i]->setObjectName(Text(StampRows[i].name));
        connect(m_stamps[i], &QCheckBox::toggled, this, &DisplayOptions::ShowWhatStampsDo);
        rows->addWidget(m_stamps[i]);
    }
    column->addWidget(frame);
}

/// A line break comes with a stamp only.
void DisplayOptions::ShowWhatStampsDo()
{
    const auto [date, time, lineBreak] = m_stamps;
    const bool stamped = date->isChecked() || time->isChecked();
    LookIdle(*lineBreak, stamped ? QString()
                                 : QStringLiteral("Without a date or time stamp no line break is "
                                                  "inserted."));
}

void DisplayOptions::Show(const OptionsValues &values)
{
    for (size_t i = 0; i < StampRows.size(); ++i)
        m_stamps[i]->setChecked(values.stamp.*StampRows[i].flag);
    ShowWhatStampsDo();
}

void DisplayOptions::Store(OptionsValues &values) const
{
    for (size_t i = 0; i < StampRows.size(); ++i)
        values.stamp.*StampRows[i].flag = m_stamps[i]->isChecked();
}
