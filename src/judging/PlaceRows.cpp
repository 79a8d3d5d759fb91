// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "PlaceRows.h"

#include "ByteLook.h"
#include "CodePage1252.h"
#include "Common_Function.h"
#include "PlainText.h"

#include <QDateTime>

#include <algorithm>
#include <array>

namespace
{

constexpr qsizetype MostBytes = 64; ///< of a sequence or a telegram in a row

constexpr std::array KindTexts = {"fired", "near miss: one byte is another",
                                  "near miss: only its beginning",
                                  "near miss: cut by another that fired"};
static_assert(KindTexts.size() == size_t(JudgedPlace::Kind::Cut) + 1);

/// Each byte as a text of its own, joined, with brackets where marks begin and end.
QString Marked(QByteArrayView bytes, const std::vector<bool> &marks, QStringView between,
               QString (*textOf)(QByteArrayView byte))
{
    QString text;
    const auto isMarked = [&marks](qsizetype i) {
        return i >= 0 && i < qsizetype(marks.size()) && marks[size_t(i)];
    };
    const qsizetype count = std::min(bytes.size(), MostBytes);
    for (qsizetype i = 0; i < count; ++i) {
        if (i > 0)
            text += between;
        if (isMarked(i) && !isMarked(i - 1))
            text += u'[';
        text += textOf(bytes.sliced(i, 1));
        if (isMarked(i) && (i + 1 == count || !isMarked(i + 1)))
            text += u']';
    }
    return count < bytes.size() ? text + QStringLiteral(" ...") : text;
}

} // namespace

namespace PlaceRows
{

QString TimeText(qint64 time)
{
    constexpr qint64 Milli = 1'000'000;
    constexpr qint64 Micro = 1'000;
    const QDateTime wall = QDateTime::fromMSecsSinceEpoch(time / Milli);
    return wall.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")) +
           QString::number(qAbs(time) % Milli / Micro).rightJustified(3, u'0');
}

QString NameText(const QByteArray &name)
{
    return PlainText(CodePage1252::ToUnicode(name));
}

QString ChannelText(const Judgement &judgement, int channel)
{
    const QString name = judgement.ports.value(channel);
    return name.isEmpty() ? QString::number(channel + 1) : PlainText(name);
}

QString FiredText(const JudgedSequence &sequence)
{
    if (sequence.bytes.isEmpty())
        return QStringLiteral("empty");
    if (!sequence.watched)
        return QStringLiteral("not active");
    return sequence.fired == 0 ? QStringLiteral("never") : QString::number(sequence.fired);
}

QString AnswerText(const JudgedSequence &sequence)
{
    if (sequence.answerName.isEmpty())
        return {};
    return NameText(sequence.answerName) + QStringLiteral(" (") + HexText(sequence.answer) + u')';
}

QString WhatText(const JudgedPlace &place)
{
    return QString::fromLatin1(KindTexts[size_t(place.kind)]);
}

QString FoundText(const Judgement &judgement, const JudgedPlace &place)
{
    const QByteArray &expected = judgement.sequences[size_t(place.sequence)].bytes;
    std::vector<bool> others(size_t(place.found.size()));
    for (qsizetype i = 0; i < std::min(expected.size(), place.found.size()); ++i)
        others[size_t(i)] = place.found[i] != expected[i];
    return HexText(place.found, others);
}

QString ExpectedText(const Judgement &judgement, const JudgedPlace &place)
{
    return HexText(judgement.sequences[size_t(place.sequence)].bytes);
}

QString LimitText(const Judgement &judgement)
{
    const bool all = std::all_of(
        judgement.sequences.begin(), judgement.sequences.end(), [&](const JudgedSequence &s) {
            return s.fired <= judgement.mostPlaces && s.nearMisses <= judgement.mostPlaces;
        });
    if (all)
        return {};
    return QStringLiteral("Of each sequence only the first %1 places and the first %1 near misses "
                          "are listed; all are counted.")
        .arg(judgement.mostPlaces);
}

QString HexText(QByteArrayView bytes, const std::vector<bool> &marks)
{
    return Marked(bytes, marks, u" ", [](QByteArrayView byte) {
        return QString::fromLatin1(Common_Function::SeqToHexText(byte));
    });
}

QString AsciiText(QByteArrayView bytes, const std::vector<bool> &marks)
{
    return Marked(bytes, marks, u"", [](QByteArrayView byte) {
        const QByteArrayView name = ByteLook::NameOf(uchar(byte.front()));
        return name.isEmpty() ? PlainText(CodePage1252::ToUnicode(byte))
                              : u'<' + QString::fromLatin1(name) + u'>';
    });
}

} // namespace PlaceRows
