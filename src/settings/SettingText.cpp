// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SettingText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace
{

template <typename Integer> bool ReadInteger(const QString &text, Integer &value)
{
    bool isNumber = false;
    const qint64 number = text.toLongLong(&isNumber);
    if (!isNumber || number < std::numeric_limits<Integer>::min() ||
        number > std::numeric_limits<Integer>::max())
        return false;
    value = Integer(number);
    return true;
}

bool ReadFlag(const QString &text, bool &value)
{
    const QString word = text.trimmed().toLower();
    qint16 number = 0;
    if (word == QLatin1StringView("true"))
        value = true;
    else if (word == QLatin1StringView("false"))
        value = false;
    else if (ReadInteger(text, number))
        value = number != 0;
    else
        return false;
    return true;
}

bool ReadFloat(const QString &text, float &value)
{
    bool isNumber = false;
    const float number = text.toFloat(&isNumber);
    if (!isNumber || !std::isfinite(number))
        return false;
    value = number;
    return true;
}

QString FloatText(float value)
{
    // The longest one has 39 digits before the point or 45 zeros behind it.
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed);
    return QString::fromLatin1(digits.data(), end.ptr - digits.data());
}

QString FlagText(bool value, FlagForm form)
{
    if (form == FlagForm::Digits)
        return value ? QStringLiteral("1") : QStringLiteral("0");
    return value ? QStringLiteral("True") : QStringLiteral("False");
}

struct Reader {
    const QString &text;

    bool operator()(qint32 *value) const { return ReadInteger(text, *value); }
    bool operator()(qint16 *value) const { return ReadInteger(text, *value); }
    bool operator()(bool *value) const { return ReadFlag(text, *value); }
    bool operator()(float *value) const { return ReadFloat(text, *value); }
    bool operator()(QString *value) const
    {
        *value = text;
        return true;
    }
};

struct Writer {
    FlagForm form;

    QString operator()(const qint32 *value) const { return QString::number(*value); }
    QString operator()(const qint16 *value) const { return QString::number(*value); }
    QString operator()(const bool *value) const { return FlagText(*value, form); }
    QString operator()(const float *value) const { return FloatText(*value); }
    QString operator()(const QString *value) const { return *value; }
};

struct Wanted {
    QString operator()(const qint32 *) const
    {
        return QStringLiteral("a whole number from -2147483648 to 2147483647");
    }
    QString operator()(const qint16 *) const
    {
        return QStringLiteral("a whole number from -32768 to 32767");
    }
    QString operator()(const bool *) const { return QStringLiteral("True or False"); }
    QString operator()(const float *) const { return QStringLiteral("a number"); }
    QString operator()(const QString *) const { return QStringLiteral("a text"); }
};

} // namespace

bool ReadSetting(const QString &text, const SettingField &field)
{
    return std::visit(Reader{text}, field);
}

QString WriteSetting(const SettingField &field, FlagForm form)
{
    return std::visit(Writer{form}, field);
}

QString WantedText(const SettingField &field)
{
    return std::visit(Wanted{}, field);
}
