// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "LineStatusGroup.h"

#include "Lamp.h"
#include "PlainText.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

namespace
{

/// What a field is shown from.
struct Shown {
    const LineStatus &line;
    const PortIdentity &identity;
    std::array<qint64, 2> rates; ///< received, sent
};

constexpr std::array StateTexts = {"closed", "open", "waiting for its device"};
static_assert(StateTexts.size() == size_t(PortState::Waiting) + 1);

QString Text(const char *latin)
{
    return QString::fromLatin1(latin);
}

QString Known(const QString &text)
{
    return text.isEmpty() ? QStringLiteral("not available") : text;
}

QString Number(const std::optional<qint64> &count)
{
    return Known(count ? QString::number(*count) : QString());
}

template <auto Count> QString Counted(const Shown &shown)
{
    return Number(shown.line.counts.*Count);
}

/// Each field takes its place in the grid: a text the width of both directions, a count that of
/// its own.
enum class Place { Both, Received, Sent };

struct FieldRow {
    const char *name;    ///< object name
    const char *caption; ///< of its row
    Place place;
    QString (*text)(const Shown &shown);
    const char *spoken = nullptr; ///< in place of a caption that two fields share
};

constexpr std::array FieldRows = {
    FieldRow{"txtState", "State", Place::Both,
             [](const Shown &shown) { return Text(StateTexts[size_t(shown.line.state)]); }},
    FieldRow{"txtDevice", "Device", Place::Both,
             [](const Shown &shown) {
                 return Known(shown.line.device.isEmpty() ? shown.identity.device
                                                          : shown.line.device);
             }},
    FieldRow{"txtDescription", "Description", Place::Both,
             [](const Shown &shown) {
                 return Known(shown.line.description.isEmpty() ? shown.identity.description
                                                               : shown.line.description);
             }},
    FieldRow{"txtStableName", "Stable name", Place::Both,
             [](const Shown &shown) { return Known(shown.identity.stableName); }},
    FieldRow{"txtSettings", "Settings", Place::Both,
             [](const Shown &shown) { return shown.line.settings; }},
    FieldRow{"txtReceivedBytes", "Bytes", Place::Received, Counted<&LineCounts::receivedBytes>,
             "Bytes received"},
    FieldRow{"txtSentBytes", "Bytes", Place::Sent, Counted<&LineCounts::sentBytes>, "Bytes sent"},
    FieldRow{"txtReceivedRate", "Bytes per second", Place::Received,
             [](const Shown &shown) { return Number(shown.rates[0]); },
             "Bytes per second received"},
    FieldRow{"txtSentRate", "Bytes per second", Place::Sent,
             [](const Shown &shown) { return Number(shown.rates[1]); }, "Bytes per second sent"},
    FieldRow{"txtReceivedChunks", "Chunks", Place::Received, Counted<&LineCounts::receivedChunks>,
             "Chunks received"},
    FieldRow{"txtSentChunks", "Chunks", Place::Sent, Counted<&LineCounts::sentChunks>,
             "Chunks sent"},
    FieldRow{"txtWaiting", "Waiting to be sent", Place::Sent, Counted<&LineCounts::waiting>},
    FieldRow{"txtDamaged", "Damaged bytes", Place::Received, Counted<&LineCounts::damaged>},
    FieldRow{"txtBreaks", "Breaks", Place::Received, Counted<&LineCounts::breaks>},
    FieldRow{"txtOverruns", "Overruns", Place::Received, Counted<&LineCounts::overruns>},
};

struct LampRow {
    const char *name;
    bool ModemLines::*line;
};

constexpr std::array<LampRow, 4> LampRows = {{{"CTS", &ModemLines::CTS},
                                              {"DSR", &ModemLines::DSR},
                                              {"DCD", &ModemLines::DCD},
                                              {"RI", &ModemLines::RI}}};

struct SwitchRow {
    const char *name;
    bool LineCounts::*line;
};

constexpr std::array<SwitchRow, 2> SwitchRows = {
    {{"RTS", &LineCounts::RTS}, {"DTR", &LineCounts::DTR}}};

/// Wide enough for most devices; a stable name is longer and can be scrolled.
constexpr int LettersOfAField = 14;

} // namespace

LineStatusGroup::LineStatusGroup(int channel, QWidget *parent)
    : QGroupBox(parent), m_grid(new QGridLayout(this)), m_channel(channel)
{
    setObjectName(NameOf("grpLine"));
    m_grid->setVerticalSpacing(2);
    MakeFields();
}

QString LineStatusGroup::NameOf(const char *part) const
{
    return QStringLiteral("%1_%2").arg(QLatin1String(part)).arg(m_channel);
}

/// Lamps and switches stand between what the port is and what it has counted.
void LineStatusGroup::MakeFields()
{
    const char *caption = "";
    for (const FieldRow &row : FieldRows) {
        if (row.place == Place::Received && m_lamps[0] == nullptr) {
            MakeLamps();
            MakeSwitches();
            const int heads = m_grid->rowCount();
            m_grid->addWidget(new QLabel(QStringLiteral("Received")), heads, 1);
            m_grid->addWidget(new QLabel(QStringLiteral("Sent")), heads, 2);
        }
        const bool sameRow = qstrcmp(caption, row.caption) == 0;
        const int place = m_grid->rowCount() - (sameRow ? 1 : 0);
        caption = row.caption;
        if (!sameRow)
            m_grid->addWidget(new QLabel(Text(caption)), place, 0);
        QLineEdit *field = MakeField(row.name);
        field->setAccessibleName(Text(row.spoken ? row.spoken : row.caption));
        m_grid->addWidget(field, place, row.place == Place::Sent ? 2 : 1, 1,
                          row.place == Place::Both ? 2 : 1);
    }
}

QLineEdit *LineStatusGroup::MakeField(const char *name)
{
    auto *field = new QLineEdit;
    field->setObjectName(NameOf(name));
    field->setReadOnly(true);
    field->setFrame(false);
    field->setMinimumWidth(LettersOfAField * field->fontMetrics().horizontalAdvance(u'0'));
    QPalette palette;
    palette.setColor(QPalette::Base, Qt::transparent);
    field->setPalette(palette);
    m_fields.append(field);
    return field;
}

void LineStatusGroup::MakeLamps()
{
    const int first = m_grid->rowCount();
    m_grid->addWidget(new QLabel(QStringLiteral("Lines")), first, 0);
    for (size_t i = 0; i < LampRows.size(); ++i) {
        m_lamps[i] = new Lamp(Text(LampRows[i].name));
        m_lamps[i]->setObjectName(NameOf("lmp") + Text(LampRows[i].name));
        m_grid->addWidget(m_lamps[i], first + int(i) / 2, 1 + int(i) % 2);
    }
}

void LineStatusGroup::MakeSwitches()
{
    const int place = m_grid->rowCount();
    m_grid->addWidget(new QLabel(QStringLiteral("Switches")), place, 0);
    for (size_t i = 0; i < SwitchRows.size(); ++i) {
        m_switches[i] = new QCheckBox(Text(SwitchRows[i].name));
        m_switches[i]->setObjectName(NameOf("chk") + Text(SwitchRows[i].name));
        m_grid->addWidget(m_switches[i], place, 1 + int(i));
        connect(m_switches[i], &QCheckBox::clicked, this,
                [this, i](bool on) { Q_EMIT SwitchWanted(OwnLine(i), on); });
    }
}

/// A field that has not changed keeps what is selected in it.
void LineStatusGroup::Show(const LineStatus &line, qint64 time)
{
    setTitle(line.caption);
    m_rates[0].Note(line.counts.receivedBytes, time);
    m_rates[1].Note(line.counts.sentBytes, time);
    const Shown shown = {line, m_identity, {m_rates[0].PerSecond(), m_rates[1].PerSecond()}};
    for (size_t i = 0; i < FieldRows.size(); ++i) {
        QLineEdit *field = m_fields[qsizetype(i)];
        if (const QString text = PlainText(FieldRows[i].text(shown)); field->text() != text) {
            field->setText(text);
            field->home(false);
        }
    }

    const bool open = line.state == PortState::Open;
    const std::optional<ModemLines> modem = open ? line.counts.modem : std::nullopt;
    for (size_t i = 0; i < LampRows.size(); ++i)
        m_lamps[i]->Show(modem ? std::optional((*modem).*LampRows[i].line) : std::nullopt);
    for (size_t i = 0; i < SwitchRows.size(); ++i) {
        m_switches[i]->setEnabled(modem.has_value());
        m_switches[i]->setChecked(modem && line.counts.*SwitchRows[i].line);
        m_switches[i]->setText(Text(SwitchRows[i].name) + (open && !modem
                                                               ? QLatin1String(" not available")
                                                               : QLatin1String()));
    }
}
