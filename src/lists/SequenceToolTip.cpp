// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "SequenceToolTip.h"

#include "ByteLook.h"
#include "SequenceListRow.h"

namespace
{

QString Shown(const QByteArray &text)
{
    using SequenceToolTip::MaxSequenceLength;
    const QString shapes =
        ByteLook::ToShapes(QByteArrayView(text).first(qMin(text.size(), MaxSequenceLength)));
    const QString lines = SequenceToolTip::Wrapped(shapes).toHtmlEscaped();
    return text.size() > MaxSequenceLength ? lines + u'\u2026' : lines;
}

QString Paragraph(const QString &label, const QByteArray &text)
{
    return text.isEmpty() ? QString() : u'\n' + label + Shown(text);
}

} // namespace

namespace SequenceToolTip
{

QString Wrapped(const QString &text)
{
    QString lines;
    for (qsizetype from = 0; from < text.size();) {
        qsizetype length = qMin(text.size() - from, LineLength);
        if (from + length < text.size()) {
            const qsizetype blank = QStringView(text).sliced(from, length).lastIndexOf(u' ');
            length = blank > 0 ? blank + 1 : length;
        }
        if (from > 0)
            lines += u'\n';
        lines += QStringView(text).sliced(from, length);
        from += length;
    }
    return lines;
}

QString Text(const SequenceListRow &row, const QString &sequenceFamily)
{
    return QStringLiteral("<div style=\"white-space: pre\"><b>") + Shown(row.name) +
           QStringLiteral("</b>\n<span style=\"font-family: '") + sequenceFamily.toHtmlEscaped() +
           QStringLiteral("'\">") + Shown(row.sequence) + QStringLiteral("</span>") +
           Paragraph(QStringLiteral("Answer: "), row.answerName) +
           Paragraph(QStringLiteral("Comment: "), row.comment) + QStringLiteral("</div>");
}

} // namespace SequenceToolTip
