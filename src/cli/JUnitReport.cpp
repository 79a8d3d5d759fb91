// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "JUnitReport.h"

#include "ByteLook.h"
#include "ClOutputFile.h"
#include "Common_Function.h"

#include <QDateTime>

namespace
{

using Verdict = StepOutcome::Verdict;

/// Of cases in memory, in bytes.
constexpr qsizetype MostInMemory = 64 * 1024;

/// What an XML file cannot hold becomes a picture of it.
QString Escaped(QString text)
{
    for (QChar &c : text) {
        if (c.unicode() < 32 && c != u'\n' && c != u'\t')
            c = QChar(0x2400 + c.unicode());
        else if (c.isSurrogate() || c.unicode() >= 0xFFFE)
            c = QChar::ReplacementCharacter;
    }
    return text.toHtmlEscaped();
}

/// Readers take a line end inside of quotes for a blank, unless it is written by its number.
QString Attribute(const char *name, const QString &value)
{
    return QStringLiteral(" %1=\"%2\"")
        .arg(QLatin1String(name), Escaped(value)
                                      .replace(u'\n', QLatin1String("&#10;"))
                                      .replace(u'\t', QLatin1String("&#9;")));
}

QString Attribute(const char *name, int count)
{
    return Attribute(name, QString::number(count));
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
    const bool goesOn =
        m_case && !group.isEmpty() && m_case->group == group && m_case->turn == outcome.group;
    if (!goesOn) {
        EndCase();
        m_case = Case{group.isEmpty() ? name : group,
                      group,
                      outcome.group,
                      outcome.verdict,
                      outcome.began,
                      outcome.ended};
    }
    if (outcome.verdict != Verdict::NotRun)
        m_case->ended = outcome.ended;
    if (outcome.verdict != Verdict::Failed || !m_case->cause.isEmpty())
        return;
    m_case->verdict = Verdict::Failed;
    m_case->cause = group.isEmpty() ? outcome.cause : name + QStringLiteral(": ") + outcome.cause;
    m_case->details = Details(outcome);
}

void JUnitReport::EndCase()
{
    if (!m_case)
        return;
    ++m_counts[size_t(m_case->verdict)];
    m_time += m_case->ended - m_case->began;
    m_latest += Written(*m_case).toUtf8();
    m_case.reset();
    if (m_latest.size() >= MostInMemory)
        Spool();
}

QString JUnitReport::Written(const Case &each) const
{
    const QString text = QStringLiteral("        <testcase") + Attribute("classname", m_name) +
                         Attribute("name", each.name) +
                         Attribute("time", Seconds(each.ended - each.began));
    if (each.verdict == Verdict::Passed)
        return text + QStringLiteral("/>\n");
    QString within = QStringLiteral("<skipped/>");
    if (each.verdict == Verdict::Failed)
        within = QStringLiteral("<failure") + Attribute("message", each.cause) +
                 QStringLiteral(" type=\"step\">") + Escaped(each.details) +
                 QStringLiteral("</failure>");
    return text + QStringLiteral(">\n            ") + within +
           QStringLiteral("\n        </testcase>\n");
}

/// Once it has failed the cases are not kept any more, only counted.
void JUnitReport::Spool()
{
    const bool spooled = !m_spooled.Failed() && (m_spool.isOpen() || m_spool.open()) &&
                         m_spool.write(m_latest) == m_latest.size() && m_spool.flush();
    if (!spooled && !m_spooled.Failed())
        m_spooled = Failure{m_spool.errorString()};
    m_latest.clear();
}

QByteArray JUnitReport::Head(qint64 began) const
{
    const auto when = QDateTime::fromMSecsSinceEpoch(began / 1'000'000, Qt::UTC);
    const auto &[passed, failed, notRun] = m_counts;
    const QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                        "<testsuites>\n    <testsuite") +
                         Attribute("name", m_name) + Attribute("tests", passed + failed + notRun) +
                         Attribute("failures", failed) + Attribute("errors", 0) +
                         Attribute("skipped", notRun) + Attribute("time", Seconds(m_time)) +
                         Attribute("timestamp", when.toString(u"yyyy-MM-ddTHH:mm:ss"));
    return (text + QStringLiteral(">\n")).toUtf8();
}

Result JUnitReport::WriteTo(ClOutputFile &file, qint64 began)
{
    EndCase();
    if (m_spooled.Failed())
        return m_spooled;
    file.WriteInFile(Head(began));
    if (m_spool.isOpen()) {
        m_spool.seek(0);
        while (!m_spool.atEnd()) {
            const QByteArray part = m_spool.read(MostInMemory);
            if (part.isEmpty())
                return Failure{m_spool.errorString()};
            file.WriteInFile(part);
        }
    }
    file.WriteInFile(m_latest);
    file.WriteInFile("    </testsuite>\n</testsuites>\n");
    return file.Commit();
}
