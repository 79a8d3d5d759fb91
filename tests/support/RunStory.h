// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QStringList>
#include <QXmlStreamReader>
#include <QtEndian>

#include <utility>

/// What happened in a run, as words: "opened", ">PING" was sent, "<PONG" received, "<2:A" received
/// on channel 2, however it was cut.
class RunStory
{
  public:
    void Bytes(char direction, int channel, const QByteArray &bytes)
    {
        const QString begin = direction + Place(channel, ":");
        const bool goesOn = !m_words.isEmpty() && m_begin == begin && direction == '<';
        m_begin = begin;
        if (goesOn)
            m_words.last() += QString::fromLatin1(bytes);
        else
            m_words << begin + QString::fromLatin1(bytes);
    }
    void Word(const QString &word, int channel = 0)
    {
        m_begin.clear();
        m_words << word + Place(channel, {});
    }
    QString Text() const { return m_words.join(' '); }

  private:
    static QString Place(int channel, const QString &behind)
    {
        return channel == 0 ? QString() : QString::number(channel + 1) + behind;
    }

    QStringList m_words;
    QString m_begin; ///< of the last word, if it may go on
};

/// Out of JSON lines: what happened, and what became of the steps: "+2" for line 2 that passed,
/// "-2" that failed, "?2" that was not run, "=0" for the end with status 0.
inline std::pair<QString, QString> StoriesOfJson(const QList<QByteArray> &lines)
{
    static const QMap<QString, QString> signs{{"passed", "+"}, {"failed", "-"}, {"not-run", "?"}};
    RunStory traffic;
    RunStory steps;
    for (const QByteArray &line : lines) {
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const QString event = object["event"].toString();
        const int channel = object["channel"].toInt() - 1;
        const QByteArray bytes = QByteArray::fromHex(object["hex"].toString().toLatin1());
        if (event == "sent" || event == "received")
            traffic.Bytes(event == "sent" ? '>' : '<', channel, bytes);
        else if (event == "step")
            steps.Word(signs[object["result"].toString()] +
                       QString::number(object["line"].toInt()));
        else if (event == "end")
            steps.Word('=' + QString::number(object["status"].toInt()));
        else if (event != "modem" && event != "answer")
            traffic.Word(event, channel);
    }
    return {traffic.Text(), steps.Text()};
}

/// Out of a capture.
inline QString StoryOfCapture(const QByteArray &capture)
{
    const auto number = [&capture](qsizetype at) {
        return at + 4 <= capture.size() ? qFromLittleEndian<quint32>(capture.constData() + at) : 0;
    };
    constexpr quint32 Packet = 6;
    constexpr qsizetype Head = 28;
    constexpr qsizetype RecordHead = 12;
    RunStory story;
    for (qsizetype at = 0; number(at + 4) >= RecordHead; at += number(at + 4)) {
        if (number(at) != Packet)
            continue;
        const int channel = int(number(at + 8));
        const qsizetype length = number(at + 20);
        const char event = capture[at + Head + 8];
        const qsizetype option = at + Head + (length + 3) / 4 * 4;
        if (event == 1 || event == 2)
            story.Bytes(event == 1 ? '>' : '<', channel,
                        capture.mid(at + Head + RecordHead, length - RecordHead));
        else if (number(option) % 65536 == 1) // not of modem lines
            story.Word(QString::fromLatin1(capture.mid(option + 4, number(option) / 65536))
                           .replace("went away for good", "gone")
                           .replace("went away", "gone")
                           .replace("is back", "back")
                           .section(':', 0, 0),
                       channel);
    }
    return story.Text();
}

/// Out of a report that keeps to the schema: what each case is called, less its place, and how it
/// failed, with what came.
inline QStringList CasesOfReport(const QString &path)
{
    QProcess lint;
    lint.start("xmllint",
               {"--noout", "--schema", SERIMONDE_TEST_FOLDER "/support/junit.xsd", path});
    if (!lint.waitForFinished() || lint.exitCode() != 0)
        return {lint.readAllStandardError()};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {"no report"};
    QStringList cases;
    for (QXmlStreamReader xml(&file); !xml.atEnd(); xml.readNext()) {
        if (!xml.isStartElement())
            continue;
        const auto attribute = [&xml](const char *name) {
            return xml.attributes().value(QLatin1String(name)).toString();
        };
        if (xml.name() == u"testcase") {
            cases << attribute("name").section(": ", -1);
        } else if (xml.name() == u"skipped") {
            cases.last() += " not run";
        } else if (xml.name() == u"failure") {
            cases.last() += " failed: " + attribute("message").section(". ", 0, 0);
            const QString came = xml.readElementText().section("came HEX: ", 1);
            cases.last() += " (" + came.section('\n', 0, 0) + ')';
        }
    }
    return cases;
}
