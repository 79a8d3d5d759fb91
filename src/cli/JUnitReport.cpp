// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "JUnitReport.h"

#include "ByteLook.h"
#include "Common_Function.h"

#include <QDateTime>
#include <QXmlStreamWriter>

#include <algorithm>

namespace
{

using Verdict = StepOutcome::Verdict;

/// What an XML file cannot hold becomes a picture of it.
QString Allowed(QString text)
{
    for (QChar &c : text) {
        if (c.unicode() < 32 && c != u'\n' && c != u'\t')
            c = QChar(0x2400 + c.unicode());
        else if (c.isSurrogate() || c.unicode() >= 0xFFFE)
            c = QChar::ReplacementCharacter;
    }
    return text;
}

QString Seconds(qint64 nanoseconds)
{
    return QString::number(double(nanoseconds) / 1e9, 'f', 6);
}

/// What was expected, and what came instead.
QString Details(const StepOutcome &outcome)
{
    QString text = QStringLiteral("%1\n%2\n").arg(outcome.step.text, outcome.cause);
    if (outcome.step.kind == Step::Kind::Expect)
        text += QStringLiteral("expected HEX: %1\n")
                    .arg(QString::fromLatin1(Common_Function::SeqToHexText(outcome.step.bytes)));
    if (outcome.heard.isEmpty())
        return text + QStringLiteral("nothing came\n");
    return text + QStringLiteral("came HEX: %1\ncame text: %2\n")
                      .arg(QString::fromLatin1(Common_Function::SeqToHexText(outcome.heard)),
                           ByteLook::ToPictures(outcome.heard));
}

} // namespace

void JUnitReport::Add(const StepOutcome &outcome, const QString &place)
{
    const QString name = QStringLiteral("%1: %2").arg(place, outcome.step.text);
    const QString &group = outcome.step.group;
    const bool goesOn = !m_cases.empty() && !group.isEmpty() && m_cases.back().group == group &&
                        m_cases.back().turn == outcome.group;
    if (!goesOn) {
        m_cases.push_back({group.isEmpty() ? name : group, group, outcome.group, outcome.verdict,
                           outcome.began, outcome.ended});
    }
    Case &last = m_cases.back();
    if (outcome.verdict != Verdict::NotRun)
        last.ended = outcome.ended;
    if (outcome.verdict != Verdict::Failed || !last.cause.isEmpty())
        return;
    last.verdict = Verdict::Failed;
    last.cause = group.isEmpty() ? outcome.cause : name + QStringLiteral(": ") + outcome.cause;
    last.details = Details(outcome);
}

QByteArray JUnitReport::Written(qint64 began) const
{
    const auto count = [this](Verdict verdict) {
        return QString::number(
            std::count_if(m_cases.begin(), m_cases.end(),
                          [verdict](const Case &each) { return each.verdict == verdict; }));
    };
    qint64 time = 0;
    for (const Case &each : m_cases)
        time += each.ended - each.began;
    const auto when = QDateTime::fromMSecsSinceEpoch(began / 1'000'000, Qt::UTC);

    QByteArray report;
    QXmlStreamWriter xml(&report);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuites"));
    xml.writeStartElement(QStringLiteral("testsuite"));
    xml.writeAttribute(QStringLiteral("name"), Allowed(m_name));
    xml.writeAttribute(QStringLiteral("tests"), QString::number(m_cases.size()));
    xml.writeAttribute(QStringLiteral("failures"), count(Verdict::Failed));
    xml.writeAttribute(QStringLiteral("errors"), QStringLiteral("0"));
    xml.writeAttribute(QStringLiteral("skipped"), count(Verdict::NotRun));
    xml.writeAttribute(QStringLiteral("time"), Seconds(time));
    xml.writeAttribute(QStringLiteral("timestamp"), when.toString(u"yyyy-MM-ddTHH:mm:ss"));
    for (const Case &each : m_cases) {
        xml.writeStartElement(QStringLiteral("testcase"));
        xml.writeAttribute(QStringLiteral("classname"), Allowed(m_name));
        xml.writeAttribute(QStringLiteral("name"), Allowed(each.name));
        xml.writeAttribute(QStringLiteral("time"), Seconds(each.ended - each.began));
        if (each.verdict == Verdict::NotRun)
            xml.writeEmptyElement(QStringLiteral("skipped"));
        if (each.verdict == Verdict::Failed) {
            xml.writeStartElement(QStringLiteral("failure"));
            xml.writeAttribute(QStringLiteral("message"), Allowed(each.cause));
            xml.writeAttribute(QStringLiteral("type"), QStringLiteral("step"));
            xml.writeCharacters(Allowed(each.details));
            xml.writeEndElement();
        }
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return report;
}
