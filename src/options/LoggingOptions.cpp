// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LoggingOptions.h"

#include "IdleLook.h"
#include "OptionButtons.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QVBoxLayout>

namespace
{

/// The stored format answers the question whether it is the first of these.
struct FormatOption {
    const char *caption;
    qint16 format;
};

constexpr std::array<FormatOption, 2> FormatOptions = {
    {{"Rich Text Format (.rtf)", 1}, {"Plain Text (.txt)", 0}}};

} // namespace

LoggingOptions::LoggingOptions()
{
    auto *column = new QVBoxLayout(this);
    MakeFiles(column);
    MakeFormats(column);
    column->addStretch();
}

void LoggingOptions::MakeFiles(QVBoxLayout *column)
{
    auto *frame = new QGroupBox(QStringLiteral("Log File Creation"));
    auto *rows = new QVBoxLayout(frame);
    for (size_t i = 0; i < m_files.size(); ++i) {
        m_files[i] = new QCheckBox(QString::fromLatin1(RepresentationRows[i].caption));
        m_files[i]->setObjectName(QString::fromLatin1(RepresentationRows[i].logBoxName));
        rows->addWidget(m_files[i]);
    }
    column->addWidget(frame);
}

void LoggingOptions::MakeFormats(QVBoxLayout *column)
{
    auto *frame = new QGroupBox(QStringLiteral("Log File Format"));
    auto *rows = new QVBoxLayout(frame);
    for (size_t i = 0; i < FormatOptions.size(); ++i) {
        auto *option = new QRadioButton(QString::fromLatin1(FormatOptions[i].caption));
        option->setObjectName(QStringLiteral("LogFileOption_%1").arg(i));
        connect(option, &QRadioButton::toggled, this, [this, i](bool checked) {
            if (!checked)
                return;
            m_format = FormatOptions[i].format;
            LeadTabToChosen(LogFileOption);
        });
        rows->addWidget(option);
        LogFileOption[i] = option;
    }
    LookIdle(*LogFileOption[0],
             QStringLiteral("Log files are always plain text (.txt); this choice "
                            "is kept, but changes nothing."));
    column->addWidget(frame);
}

void LoggingOptions::Show(const OptionsValues &values)
{
    for (size_t i = 0; i < m_files.size(); ++i)
        m_files[i]->setChecked(values.log.files[i]);
    LogFileOption[values.log.Format != 0 ? 0 : 1]->setChecked(true);
    m_format = values.log.Format;
}

void LoggingOptions::Store(OptionsValues &values) const
{
    for (size_t i = 0; i < m_files.size(); ++i)
        values.log.files[i] = m_files[i]->isChecked();
    values.log.Format = m_format;
}
