// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CodePageEdit.h"

#include "CodePage1252.h"

#include <QToolTip>
#include <QValidator>

#include <limits>

namespace
{

/// Takes what the code page holds, and notes why it refused the rest.
class CodePageValidator final : public QValidator
{
  public:
    CodePageValidator(QString &refusal, QObject *parent) : QValidator(parent), m_refusal(refusal) {}

    State validate(QString &input, int &) const override
    {
        input.replace(QLatin1String("\r\n"), QLatin1String(" "));
        for (QChar &character : input) {
            if (character == u'\r' || character == u'\n' || character == QChar::LineSeparator ||
                character == QChar::ParagraphSeparator)
                character = u' ';
        }
        const qsizetype foreign = CodePage1252::FromUnicode(input).firstForeign;
        m_refusal = foreign < 0 ? QString() : CodePage1252::RefusalOf(input, foreign);
        return m_refusal.isEmpty() ? Acceptable : Invalid;
    }

  private:
    QString &m_refusal;
};

} // namespace

CodePageEdit::CodePageEdit(QWidget *parent) : QLineEdit(parent)
{
    setMaxLength(std::numeric_limits<int>::max());
    setValidator(new CodePageValidator(m_refusal, this));
    connect(this, &QLineEdit::inputRejected, this,
            [this] { QToolTip::showText(mapToGlobal(QPoint(0, height())), m_refusal, this); });
}

QByteArray CodePageEdit::Text() const
{
    return text() == m_shown ? m_given : CodePage1252::FromUnicode(text()).bytes;
}

void CodePageEdit::SetText(const QByteArray &text)
{
    m_given = text;
    setText(CodePage1252::ToUnicode(text));
    m_shown = this->text();
}
