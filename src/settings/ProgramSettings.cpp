// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ProgramSettings.h"

#include "CaptureSettings.h"
#include "CommSettings.h"
#include "DisplaySettings.h"
#include "LogSettings.h"
#include "MdSequenceEdition.h"
#include "PrintSettings.h"
#include "RecordSettings.h"
#include "Representation.h"
#include "SendLineSettings.h"
#include "SequenceSettings.h"
#include "SettingText.h"
#include "SettingsStore.h"
#include "StampText.h"
#include "StoredSettings.h"
#include "ViewSettings.h"
#include "WindowSettings.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace
{

/// The field of a subject that owns it; none if the program lacks the subject.
using Locate = std::optional<SettingField> (*)(const StoredSettings &);

/// What a stored text that does not convert leads to.
enum class BadText { Refused, DefaultTaken };

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
    BadText badText = BadText::Refused;
    qint32 least = std::numeric_limits<qint32>::min(); ///< of a whole number of 32 bits
};

constexpr const char *Window = "Settings";
constexpr const char *Lists = "Lists";
constexpr const char *Colors = "Colors";
constexpr const char *TextSetup = "TextSetup";
constexpr const char *Communication = "Communication";
constexpr const char *Stamp = "Stamp";
constexpr const char *LogFile = "LogFile";
constexpr const char *TrafficWindow = "TrafficWindow";

template <typename Subject, typename Find>
std::optional<SettingField> FieldOf(Subject *subject, Find find)
{
    return subject ? std::optional<SettingField>(find(*subject)) : std::nullopt;
}

/// A member of a subject.
template <auto Subject, auto Member>
std::optional<SettingField> Field(const StoredSettings &settings)
{
    return FieldOf(settings.*Subject, [](auto &subject) { return &(subject.*Member); });
}

template <auto List, size_t Column>
std::optional<SettingField> ListField(const StoredSettings &settings)
{
    return FieldOf(settings.lists, [](ListSettings &lists) { return &(lists.*List)[Column]; });
}

template <auto Copy, size_t Style, auto Member>
std::optional<SettingField> StyleField(const StoredSettings &settings)
{
    return FieldOf(settings.*Copy,
                   [](DisplaySettings &display) { return &(display.styles[Style].*Member); });
}

std::optional<SettingField> FolderField(const StoredSettings &settings)
{
    return FieldOf(settings.projectFolder, [](QString &folder) { return &folder; });
}

template <Representation R> std::optional<SettingField> LogFlag(const StoredSettings &settings)
{
    return FieldOf(settings.log, [](LogSettings &log) { return &log.files[size_t(R)]; });
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
            Field<&StoredSettings::displayNext, &DisplaySettings::DispBack>,
            missing,
            FlagForm::Words,
            Field<&StoredSettings::display, &DisplaySettings::DispBack>};
}

template <size_t Style, auto Member>
constexpr SettingRow StyleRow(const char *section, const char *key, const char *missing)
{
    return {section,
            key,
            StyleField<&StoredSettings::displayNext, Style, Member>,
            missing,
            FlagForm::Digits,
            StyleField<&StoredSettings::display, Style, Member>};
}

template <size_t Style> constexpr SettingRow ColourRow(const char *key, const char *missing)
{
    return StyleRow<Style, &TextStyle::colour>(Colors, key, missing);
}

template <size_t Style, auto Member> constexpr SettingRow AttributeRow(const char *key)
{
    return StyleRow<Style, Member>(TextSetup, key, "0");
}

/// A setting without which the program does as well: one that is damaged keeps nobody from
/// starting.
constexpr SettingRow ForgivingRow(const char *section, const char *key, Locate field,
                                  const char *missing)
{
    return {section, key, field, missing, FlagForm::Words, nullptr, false, BadText::DefaultTaken};
}

constexpr SettingRow AtLeast(qint32 least, SettingRow row)
{
    row.least = least;
    return row;
}

template <auto Member> constexpr SettingRow TrafficRow(const char *key, const char *missing)
{
    return ForgivingRow(TrafficWindow, key, Field<&StoredSettings::traffic, Member>, missing);
}

template <auto Member> constexpr SettingRow ResponsesRow(const char *key, const char *missing)
{
    return ForgivingRow("ResponseTimes", key, Field<&StoredSettings::responses, Member>, missing);
}

template <size_t Column> std::optional<SettingField> TrafficWidth(const StoredSettings &settings)
{
    return FieldOf(settings.traffic,
                   [](TrafficWindowSettings &traffic) { return &traffic.widths[Column]; });
}

template <size_t Column> constexpr SettingRow TrafficColumn(const char *key)
{
    return AtLeast(-1, ForgivingRow(TrafficWindow, key, TrafficWidth<Column>, "-1"));
}

using namespace StyleIndex;

constexpr std::array SettingRows = {
    PlaceRow("MainLeft", Field<&StoredSettings::window, &WindowSettings::MainLeft>, "0"),
    PlaceRow("MainTop", Field<&StoredSettings::window, &WindowSettings::MainTop>, "0"),
    PlaceRow("MainWidth", Field<&StoredSettings::window, &WindowSettings::MainWidth>, nullptr),
    PlaceRow("MainHeight", Field<&StoredSettings::window, &WindowSettings::MainHeight>, nullptr),
    SettingRow{Window, "vSplitt", Field<&StoredSettings::window, &WindowSettings::vSplitt>, "6000"},
    SettingRow{Window, "hSplitt", Field<&StoredSettings::window, &WindowSettings::hSplitt>, "6000"},
    SettingRow{Window, "ProjectPath", FolderField, nullptr},

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
               Field<&StoredSettings::sequences, &SequenceSettings::Display>, "0"},

    SettingRow{Communication, "CommType", Field<&StoredSettings::comm, &CommSettings::CommType>,
               "0"},
    SettingRow{Communication, "CommPortA", Field<&StoredSettings::comm, &CommSettings::CommPortA>,
               "1"},
    SettingRow{Communication, "CommPortB", Field<&StoredSettings::comm, &CommSettings::CommPortB>,
               "2"},
    SettingRow{Communication, "CommSpeed", Field<&StoredSettings::comm, &CommSettings::CommSpeed>,
               "5"},
    SettingRow{Communication, "CommParity", Field<&StoredSettings::comm, &CommSettings::CommParity>,
               "2"},
    SettingRow{Communication, "CommDataBits",
               Field<&StoredSettings::comm, &CommSettings::CommDataBits>, "4"},
    SettingRow{Communication, "CommStopBits",
               Field<&StoredSettings::comm, &CommSettings::CommStopBits>, "0"},

    SettingRow{Stamp, "NewLine", Field<&StoredSettings::stamp, &StampSettings::NewLine>, "True"},
    SettingRow{Stamp, "Date", Field<&StoredSettings::stamp, &StampSettings::Date>, "False"},
    SettingRow{Stamp, "Time", Field<&StoredSettings::stamp, &StampSettings::Time>, "False"},

    SettingRow{LogFile, "ASCII", LogFlag<Representation::Ascii>, "True"},
    SettingRow{LogFile, "Decimal", LogFlag<Representation::Decimal>, "False"},
    SettingRow{LogFile, "HEX", LogFlag<Representation::Hex>, "False"},
    SettingRow{LogFile, "Binary", LogFlag<Representation::Binary>, "False"},
    SettingRow{LogFile, "Format", Field<&StoredSettings::log, &LogSettings::Format>, "0"},
    SettingRow{LogFile, "Folder", Field<&StoredSettings::log, &LogSettings::Folder>, ""},

    ForgivingRow("View", "ControlCharacters",
                 Field<&StoredSettings::view, &ViewSettings::ControlCharacters>, "True"),
    ForgivingRow("Print", "MarginText", Field<&StoredSettings::print, &PrintSettings::MarginText>,
                 "False"),

    ForgivingRow("Reconnection", "Reopen", Field<&StoredSettings::comm, &CommSettings::CommReopen>,
                 "False"),

    ForgivingRow("Captures", "Folder", Field<&StoredSettings::captures, &CaptureSettings::Folder>,
                 ""),
    AtLeast(0,
            ForgivingRow("Record", "MostMegabytes",
                         Field<&StoredSettings::record, &RecordSettings::MostMegabytes>, "1024")),

    AtLeast(1, ForgivingRow("NetworkPorts", "DeadAfterSeconds",
                            Field<&StoredSettings::comm, &CommSettings::CommDeadSeconds>, "10")),

    TrafficRow<&TrafficWindowSettings::Left>("Left", "0"),
    TrafficRow<&TrafficWindowSettings::Top>("Top", "0"),
    AtLeast(0, TrafficRow<&TrafficWindowSettings::Width>("Width", "0")),
    AtLeast(0, TrafficRow<&TrafficWindowSettings::Height>("Height", "0")),
    AtLeast(0, TrafficRow<&TrafficWindowSettings::DetailsHeight>("DetailsHeight", "0")),
    AtLeast(0, TrafficRow<&TrafficWindowSettings::CountsFrom>("CountsFrom", "0")),
    AtLeast(-1, TrafficRow<&TrafficWindowSettings::GapMicroseconds>("GapMicroseconds", "-1")),
    TrafficRow<&TrafficWindowSettings::EndMark>("EndMark", ""),
    AtLeast(0, TrafficRow<&TrafficWindowSettings::FixedLength>("FixedLength", "0")),
    TrafficRow<&TrafficWindowSettings::EndsWithDetection>("EndsWithDetection", "True"),
    TrafficRow<&TrafficWindowSettings::Checksum>("Checksum", ""),
    TrafficColumn<0>("NumberWidth"),
    TrafficColumn<1>("TimeWidth"),
    TrafficColumn<2>("AfterWidth"),
    TrafficColumn<3>("PortWidth"),
    TrafficColumn<4>("BytesWidth"),
    TrafficColumn<5>("HexWidth"),
    TrafficColumn<6>("TextWidth"),
    TrafficColumn<7>("SequenceWidth"),
    TrafficColumn<8>("AnswerWidth"),
    TrafficColumn<9>("MarksWidth"),
    ForgivingRow("SendLine", "Form", Field<&StoredSettings::sendLine, &SendLineSettings::Form>,
                 "0"),
    ForgivingRow("SendLine", "Appends",
                 Field<&StoredSettings::sendLine, &SendLineSettings::Appends>, ""),
    AtLeast(1, ForgivingRow("SendLine", "EveryMilliseconds",
                            Field<&StoredSettings::sendLine, &SendLineSettings::EveryMilliseconds>,
                            "1000")),
    AtLeast(0, ForgivingRow("SendLine", "Count",
                            Field<&StoredSettings::sendLine, &SendLineSettings::Count>, "0")),
    ResponsesRow<&ResponseWindowSettings::Left>("Left", "0"),
    ResponsesRow<&ResponseWindowSettings::Top>("Top", "0"),
    AtLeast(0, ResponsesRow<&ResponseWindowSettings::Width>("Width", "0")),
    AtLeast(0, ResponsesRow<&ResponseWindowSettings::Height>("Height", "0")),
    AtLeast(1,
            ResponsesRow<&ResponseWindowSettings::LimitMilliseconds>("LimitMilliseconds", "1000")),
    ResponsesRow<&ResponseWindowSettings::Logarithmic>("Logarithmic", "False"),
};

/// What is wrong with a text that does not convert to the type of its setting; no full stop.
QString Complaint(const SettingRow &row, const QString &text, const SettingField &field)
{
    const bool bounded = row.least > std::numeric_limits<qint32>::min();
    return QStringLiteral("The setting \"%2\" in section \"%1\" holds the text \"%3\", which is "
                          "not %4")
        .arg(QString::fromLatin1(row.section), QString::fromLatin1(row.key), text,
             bounded ? QStringLiteral("a whole number from %1 to 2147483647").arg(row.least)
                     : WantedText(field));
}

bool ReadRow(const SettingRow &row, const QString &text, const SettingField &field)
{
    const auto *number = std::get_if<qint32 *>(&field);
    return ReadSetting(text, field) && (!number || **number >= row.least);
}

QString Cures(const SettingsStore &store)
{
    return QStringLiteral(". Correct or delete it in the file %1, then start again; or start with "
                          "--reset-settings, which sets the file aside.")
        .arg(store.Place());
}

QString DefaultTaken(const SettingRow &row, const SettingsStore &store)
{
    return QStringLiteral(" (file %1). \"%2\" is used instead.")
        .arg(store.Place(), QString::fromLatin1(row.missing));
}

/// Their keys are the captions of the representations.
constexpr bool EveryLogFlagIsStored()
{
    return std::all_of(AllRepresentations.begin(), AllRepresentations.end(), [](Representation r) {
        return std::any_of(SettingRows.begin(), SettingRows.end(), [r](const SettingRow &row) {
            return std::string_view(row.section) == LogFile &&
                   std::string_view(row.key) == RowOf(r).caption;
        });
    });
}

static_assert(EveryLogFlagIsStored(), "the log flag of a representation has no row");

} // namespace

namespace ProgramSettings
{

Result LoadSettings(const SettingsStore &store, const StoredSettings &settings,
                    MdSequenceEdition &sequences, QStringList &notices)
{
    sequences.ActivateAll();
    for (const SettingRow &row : SettingRows) {
        const std::optional<SettingField> field = row.field(settings);
        std::optional<QString> text =
            store.Read(QString::fromLatin1(row.section), QString::fromLatin1(row.key));
        if (!text && row.missing)
            text = QString::fromLatin1(row.missing);
        if (!text || !field)
            continue;
        if (!ReadRow(row, *text, *field)) {
            const QString complaint = Complaint(row, *text, *field);
            if (row.badText == BadText::Refused)
                return Failure{complaint + Cures(store)};
            notices += complaint + DefaultTaken(row, store);
            text = QString::fromLatin1(row.missing);
            ReadSetting(*text, *field);
        }
        if (const auto inForce = row.inForce ? row.inForce(settings) : std::nullopt)
            ReadSetting(*text, *inForce);
    }
    return {};
}

Result SaveSettings(SettingsStore &store, const StoredSettings &settings, bool minimised)
{
    for (const SettingRow &row : SettingRows) {
        const std::optional<SettingField> field = row.field(settings);
        if (!field || (minimised && row.windowPlace))
            continue;
        store.Write(QString::fromLatin1(row.section), QString::fromLatin1(row.key),
                    WriteSetting(*field, row.form));
    }
    return store.Flush();
}

} // namespace ProgramSettings
