// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DoctorReport.h"

#include "PlainText.h"

#include <QRegularExpression>

#include <algorithm>
#include <array>

namespace
{

/// By Finding::Weight.
constexpr std::array<char16_t, 3> Marks = {u' ', u'*', u'!'};

QString Verdict(qsizetype faults)
{
    if (faults == 0)
        return QStringLiteral("nothing was found that stands in the way");
    return faults == 1 ? QStringLiteral("1 thing stands in the way")
                       : QStringLiteral("%1 things stand in the way").arg(faults);
}

qsizetype FaultsIn(const QList<Finding> &findings)
{
    return std::count_if(findings.begin(), findings.end(), [](const Finding &finding) {
        return finding.weight == Finding::Weight::Fault;
    });
}

} // namespace

bool DoctorReport::HasFault() const
{
    return FaultsIn(findings) > 0;
}

QString DoctorReport::Text() const
{
    QString text = QStringLiteral("%1: %2\n").arg(PlainText(port), Verdict(FaultsIn(findings)));
    for (const Finding &finding : findings) {
        text += QChar(Marks[size_t(finding.weight)]) + u' ' + finding.title + QStringLiteral(": ") +
                PlainText(finding.text) + u'\n';
        if (!finding.cure.isEmpty())
            text += QStringLiteral("    ") + PlainText(finding.cure) + u'\n';
    }
    return text;
}

QString ShellWord(const QString &word)
{
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z0-9_./:@%+=,-]+$"));
    if (plain.match(word).hasMatch())
        return word;
    return u'\'' + QString(word).replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}
