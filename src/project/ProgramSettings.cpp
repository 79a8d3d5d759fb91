// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "project/ProgramSettings.h"

#include "platform/SettingsStore.h"
#include "project/SettingText.h"
#include "project/SettingsRecord.h"
#include "sequences/MdSequenceEdition.h"

#include <array>

namespace
{

using Locate = SettingField (*)(SettingsRecord &);

/// One setting. The rows are in the order of loading and saving.
struct SettingRow {
    const char *section;
    const char *key;
    Locate field;
    const char *missing; ///< default text; null: the record already holds the default
    FlagForm form = FlagForm::Words;
    /// Style and colour settings: the copy in force, set on loading; field is the saved copy.
    Locate inForce = nullptr;
    /// Not saved while the window is minimised.
    bool windowPlace = false;
};

constexpr const char *Window = "Settings";
constexpr const char *Lists = "Lists";
constexpr const char *Colors = "Colors";
constexpr const char *TextSetup = "TextSetup";
constexpr const char *Communication = "Communication";
constexpr const char *Stamp = "Stamp";
constexpr const char *LogFile = "LogFile";

template <auto Member> SettingField CommField(SettingsRecord &s)
{
    return &(s.comm.stored.*Member);
}

template <auto Member> SettingField WindowField(SettingsRecord &s)
{
    return &(s.window.*Member);
}

template <auto List, size_t Column> SettingField ListField(SettingsRecord &s)
{
    return &(s.lists.*List)[Column];
}

template <auto Member> SettingField StampField(SettingsRecord &s)
{
    return &(s.stamp.*Member);
}

template <auto Member> SettingField LogField(SettingsRecord &s)
{
    return &(s.log.*Member);
}

template <auto Copy> SettingField BackgroundField(SettingsRecord &s)
{
    return &(s.*Copy).DispBack;
}

template <auto Copy, size_t Style, auto Member> SettingField StyleField(SettingsRecord &s)
{
    return &((s.*Copy).styles[Style].*Member);
}

constexpr SettingRow PlaceRow(const char *key, Locate field, const char *missing)
{
    return {Window, key, field, missing, FlagForm::Words, nullptr, true};
}

template <auto List, size_t Column> constexpr SettingRow ListRow(const char *key)
{
    return {Lists, key, ListField<List, Column>, nullptr};
}

constexpr SettingRow BackgroundRow(const char *key, const char *missing)
{
    return {Colors,
            key,
            BackgroundField<&SettingsRecord::displayNext>,
            missing,
            FlagForm::Words,
            BackgroundField<&SettingsRecord::display>};
}

template <size_t Style, auto Member>
constexpr SettingRow StyleRow(const char *section, const char *key, const char *missing)
{
    return {section,
            key,
            StyleField<&SettingsRecord::displayNext, Style, Member>,
            missing,
            FlagForm::Digits,
            StyleField<&SettingsRecord::display, Style, Member>};
}

template <size_t Style> constexpr SettingRow ColourRow(const char *key, const char *missing)
{
    return StyleRow<Style, &TextStyle::colour>(Colors, key, missing);
}

template <size_t Style, auto Member> constexpr SettingRow AttributeRow(const char *key)
{
    return StyleRow<Style, Member>(TextSetup, key, "0");
}

using namespace StyleIndex;

constexpr std::array SettingRows = {
    PlaceRow("MainLeft", WindowField<&WindowSettings::MainLeft>, "0"),
    PlaceRow("MainTop", WindowField<&WindowSettings::MainTop>, "0"),
    PlaceRow("MainWidth", WindowField<&WindowSettings::MainWidth>, nullptr),
    PlaceRow("MainHeight", WindowField<&WindowSettings::MainHeight>, nullptr),
    SettingRow{Window, "vSplitt", WindowField<&WindowSettings::vSplitt>, "6000"},
    SettingRow{Window, "hSplitt", WindowField<&WindowSettings::hSplitt>, "6000"},
    SettingRow{Window, "ProjectPath",
               [](SettingsRecord &s) -> SettingField { return &s.ProjectDirectory; }, nullptr},

    ListRow<&ListSettings::sendWidths, 0>("SendButtonWidth"),
    ListRow<&ListSettings::sendWidths, 1>("SendNameWidth"),
    ListRow<&ListSettings::sendWidths, 2>("SendSequenceWidth"),
    ListRow<&ListSettings::receiveWidths, 0>("ReceiveActiveWidth"),
    ListRow<&ListSettings::receiveWidths, 1>("ReceiveNameWidth"),
    ListRow<&ListSettings::receiveWidths, 2>("ReceiveSequenceWidth"),
    ListRow<&ListSettings::receiveWidths, 3>("ReceiveAnswerWidth"),

    BackgroundRow("DispBack", "16777215"),
    ColourRow<Direction1>("Dir1TextColor", "16711680"),
    ColourRow<Direction2>("Dir2TextColor", "255"),
    ColourRow<Comment>("CmtTextColor", "32768"),

    AttributeRow<Direction1, &TextStyle::bold>("BldDir1"),
    AttributeRow<Direction2, &TextStyle::bold>("BldDir2"),
    AttributeRow<Comment, &TextStyle::bold>("BldCmt"),
    AttributeRow<Direction1, &TextStyle::italic>("ItlDir1"),
    AttributeRow<Direction2, &TextStyle::italic>("ItlDir2"),
    AttributeRow<Comment, &TextStyle::italic>("ItlCmt"),
    AttributeRow<Direction1, &TextStyle::underline>("UndrlnDir1"),
    AttributeRow<Direction2, &TextStyle::underline>("UndrlnDir2"),
    AttributeRow<Comment, &TextStyle::underline>("UndrlnCmt"),

    SettingRow{"SendReceive", "Display",
               [](SettingsRecord &s) -> SettingField { return &s.Display; }, "0"},

    SettingRow{Communication, "CommType", CommField<&CommSettings::CommType>, "0"},
    SettingRow{Communication, "CommPortA", CommField<&CommSettings::CommPortA>, "1"},
    SettingRow{Communication, "CommPortB", CommField<&CommSettings::CommPortB>, "2"},
    SettingRow{Communication, "CommSpeed", CommField<&CommSettings::CommSpeed>, "5"},
    SettingRow{Communication, "CommParity", CommField<&CommSettings::CommParity>, "2"},
    SettingRow{Communication, "CommDataBits", CommField<&CommSettings::CommDataBits>, "4"},
    SettingRow{Communication, "CommStopBits", CommField<&CommSettings::CommStopBits>, "0"},

    SettingRow{Stamp, "NewLine", StampField<&StampSettings::NewLine>, "True"},
    SettingRow{Stamp, "Date", StampField<&StampSettings::Date>, "False"},
    SettingRow{Stamp, "Time", StampField<&StampSettings::Time>, "False"},

    SettingRow{LogFile, "ASCII", LogField<&LogSettings::ASCII>, "True"},
    SettingRow{LogFile, "Decimal", LogField<&LogSettings::Decimal>, "False"},
    SettingRow{LogFile, "HEX", LogField<&LogSettings::HEX>, "False"},
    SettingRow{LogFile, "Binary", LogField<&LogSettings::Binary>, "False"},
    SettingRow{LogFile, "Format", LogField<&LogSettings::Format>, "0"},
    SettingRow{LogFile, "Folder", LogField<&LogSettings::Folder>, ""},
};

} // namespace

namespace ProgramSettings
{

QString BadSetting::Message() const
{
    return QStringLiteral("The setting \"%2\" in section \"%1\" holds the text \"%3\", which is "
                          "not %4. Correct or delete it, then start again.")
        .arg(section, key, text, wanted);
}

std::optional<BadSetting> LoadSettings(const SettingsStore &store, SettingsRecord &settings,
                                       MdSequenceEdition &sequences)
{
    sequences.ActivateAll();
    for (const SettingRow &row : SettingRows) {
        const QString section = QString::fromLatin1(row.section);
        const QString key = QString::fromLatin1(row.key);
        std::optional<QString> text = store.Read(section, key);
        if (!text && row.missing)
            text = QString::fromLatin1(row.missing);
        if (!text)
            continue;
        const SettingField field = row.field(settings);
        if (!ReadSetting(*text, field))
            return BadSetting{section, key, *text, WantedText(field)};
        if (row.inForce)
            ReadSetting(*text, row.inForce(settings));
    }
    return std::nullopt;
}

QString SaveSettings(SettingsStore &store, SettingsRecord &settings, bool minimised)
{
    for (const SettingRow &row : SettingRows) {
        if (minimised && row.windowPlace)
            continue;
        store.Write(QString::fromLatin1(row.section), QString::fromLatin1(row.key),
                    WriteSetting(row.field(settings), row.form));
    }
    return store.Flush();
}

} // namespace ProgramSettings
