// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmTelegramRule.h"

#include "Checksum.h"
#include "SequenceText.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <cmath>

namespace
{

constexpr double Micro = 1'000;
constexpr double Milli = 1'000'000;
constexpr double UsualGap = 10; ///< in ms
constexpr int UsualLength = 8;
constexpr auto UsualEndMark = "0D 0A";

template <typename Widget> Widget *Named(const char *name, Widget *widget)
{
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

QString HexOf(const QByteArray &bytes)
{
    return QString::fromLatin1(SequenceText::Of(bytes, Representation::Hex));
}

} // namespace

frmTelegramRule::frmTelegramRule(const TelegramRule &rule, QWidget *parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("frmTelegramRule"));
    setWindowTitle(QStringLiteral("Where Telegrams End"));
    auto *column = new QVBoxLayout(this);
    column->addWidget(MakeEnds());
    column->addWidget(MakeChecksum());
    lblRefusal = Named("lblRefusal", new QLabel);
    lblRefusal->setTextFormat(Qt::PlainText);
    lblRefusal->setWordWrap(true);
    column->addWidget(lblRefusal);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("cmdOK"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("cmdCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &frmTelegramRule::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addWidget(buttons);
    Show(rule);
}

QWidget *frmTelegramRule::MakeEnds()
{
    auto *ends =
        new QGroupBox(QStringLiteral("Besides where the direction changes, a telegram ends"));
    rdoAutomatic = Named(
        "rdoAutomatic", new QRadioButton(QStringLiteral("before a silence that &suits the speed")));
    rdoAutomatic->setToolTip(QStringLiteral(
        "3.5 characters, but no less than the clock can tell: 5 ms, 18 ms behind a USB adapter"));
    rdoGap = Named("rdoGap", new QRadioButton(QStringLiteral("before a silence of at &least")));
    rdoNoGap = Named("rdoNoGap", new QRadioButton(QStringLiteral("at &no silence")));
    txtGap = Named("txtGap", new QDoubleSpinBox);
    txtGap->setRange(0.001, double(TelegramRule::HighestGap) / Milli);
    txtGap->setDecimals(3);
    txtGap->setSuffix(QStringLiteral(" ms"));
    txtGap->setAccessibleName(QStringLiteral("Silence in milliseconds"));
    chkEndMark = Named("chkEndMark", new QCheckBox(QStringLiteral("&behind the bytes (HEX)")));
    txtEndMark = Named("txtEndMark", new QLineEdit);
    txtEndMark->setAccessibleName(QStringLiteral("Bytes at the end, HEX"));
    chkLength = Named("chkLength", new QCheckBox(QStringLiteral("when it has a le&ngth of")));
    txtLength = Named("txtLength", new QSpinBox);
    txtLength->setRange(1, 65536);
    txtLength->setSuffix(QStringLiteral(" bytes"));
    txtLength->setAccessibleName(QStringLiteral("Length in bytes"));
    chkDetection = Named("chkDetection",
                         new QCheckBox(QStringLiteral("where a &receive sequence was detected")));
    auto *grid = new QGridLayout(ends);
    grid->addWidget(rdoAutomatic, 0, 0, 1, 2);
    grid->addWidget(rdoGap, 1, 0);
    grid->addWidget(txtGap, 1, 1);
    grid->addWidget(rdoNoGap, 2, 0, 1, 2);
    grid->addWidget(chkEndMark, 3, 0);
    grid->addWidget(txtEndMark, 3, 1);
    grid->addWidget(chkLength, 4, 0);
    grid->addWidget(txtLength, 4, 1);
    grid->addWidget(chkDetection, 5, 0, 1, 2);
    for (QAbstractButton *each :
         {static_cast<QAbstractButton *>(rdoGap), static_cast<QAbstractButton *>(chkEndMark),
          static_cast<QAbstractButton *>(chkLength)})
        connect(each, &QAbstractButton::toggled, this, &frmTelegramRule::EnableFields);
    return ends;
}

QWidget *frmTelegramRule::MakeChecksum()
{
    auto *group = new QGroupBox(QStringLiteral("Its last bytes are checked as"));
    cboChecksum = Named("cboChecksum", new QComboBox);
    cboChecksum->setAccessibleName(QStringLiteral("Checksum"));
    cboChecksum->addItem(QStringLiteral("no checksum"));
    for (const ChecksumRow &row : Checksum::Rows())
        cboChecksum->addItem(QString::fromLatin1(row.caption));
    txtFirst = Named("txtFirst", new QSpinBox);
    txtFirst->setRange(1, 65536);
    txtFirst->setPrefix(QStringLiteral("from byte "));
    txtFirst->setAccessibleName(QStringLiteral("First byte that is covered"));
    chkHighFirst = Named("chkHighFirst", new QCheckBox(QStringLiteral("&high byte first")));
    connect(cboChecksum, &QComboBox::activated, this, &frmTelegramRule::ShowChecksum);
    auto *row = new QHBoxLayout(group);
    row->addWidget(cboChecksum, 1);
    row->addWidget(txtFirst);
    row->addWidget(chkHighFirst);
    return group;
}

void frmTelegramRule::Show(const TelegramRule &rule)
{
    rdoAutomatic->setChecked(rule.automaticGap);
    rdoGap->setChecked(!rule.automaticGap && rule.gap > 0);
    rdoNoGap->setChecked(!rule.automaticGap && rule.gap <= 0);
    txtGap->setValue(rule.gap > 0 ? double(rule.gap) / Milli : UsualGap);
    chkEndMark->setChecked(!rule.endMark.isEmpty());
    txtEndMark->setText(rule.endMark.isEmpty() ? QString::fromLatin1(UsualEndMark)
                                               : HexOf(rule.endMark));
    chkLength->setChecked(rule.fixedLength > 0);
    txtLength->setValue(rule.fixedLength > 0 ? rule.fixedLength : UsualLength);
    chkDetection->setChecked(rule.endsWithDetection);
    const ChecksumRule checksum = rule.checksum.value_or(ChecksumRule());
    cboChecksum->setCurrentIndex(rule.checksum ? int(checksum.kind) + 1 : 0);
    txtFirst->setValue(int(checksum.first));
    chkHighFirst->setChecked(checksum.highByteFirst);
    EnableFields();
}

/// A kind begins as it is usually met.
void frmTelegramRule::ShowChecksum(int index)
{
    if (index > 0) {
        const ChecksumRule usual = Checksum::UsualRule(ChecksumKind(index - 1));
        txtFirst->setValue(int(usual.first));
        chkHighFirst->setChecked(usual.highByteFirst);
    }
    EnableFields();
}

void frmTelegramRule::EnableFields()
{
    txtGap->setEnabled(rdoGap->isChecked());
    txtEndMark->setEnabled(chkEndMark->isChecked());
    txtLength->setEnabled(chkLength->isChecked());
    const int index = cboChecksum->currentIndex();
    const ChecksumRow *row = index > 0 ? &Checksum::RowOf(ChecksumKind(index - 1)) : nullptr;
    txtFirst->setEnabled(row && row->frame == ChecksumFrame::Bytes);
    chkHighFirst->setEnabled(row && row->width > 1);
}

TelegramRule frmTelegramRule::Rule() const
{
    TelegramRule rule;
    rule.automaticGap = rdoAutomatic->isChecked();
    if (rdoGap->isChecked())
        rule.gap = std::llround(txtGap->value() * Milli / Micro) * qint64(Micro);
    if (chkEndMark->isChecked())
        rule.endMark = SequenceText::Parse(txtEndMark->text(), Representation::Hex).bytes;
    rule.fixedLength = chkLength->isChecked() ? txtLength->value() : 0;
    rule.endsWithDetection = chkDetection->isChecked();
    if (const int index = cboChecksum->currentIndex(); index > 0)
        rule.checksum =
            ChecksumRule{ChecksumKind(index - 1), txtFirst->value(), chkHighFirst->isChecked()};
    return rule;
}

void frmTelegramRule::accept()
{
    const SequenceText::Parsed parsed =
        SequenceText::Parse(txtEndMark->text(), Representation::Hex);
    QString refusal;
    if (chkEndMark->isChecked()) {
        if (!parsed.refusal.isEmpty())
            refusal = parsed.refusal;
        else if (parsed.bytes.isEmpty())
            refusal = QStringLiteral("Which bytes does a telegram end with?");
        else if (parsed.bytes.size() > TelegramRule::LongestEndMark)
            refusal = QStringLiteral("At most %1 bytes.").arg(TelegramRule::LongestEndMark);
    }
    lblRefusal->setText(refusal);
    if (refusal.isEmpty())
        QDialog::accept();
    else
        txtEndMark->setFocus();
}

QString frmTelegramRule::Summary(const TelegramRule &rule)
{
    QStringList parts;
    if (rule.automaticGap)
        parts += QStringLiteral("automatic gap");
    else if (rule.gap > 0)
        parts += QStringLiteral("gap %1 ms").arg(double(rule.gap) / Milli);
    if (!rule.endMark.isEmpty())
        parts += HexOf(rule.endMark);
    if (rule.fixedLength > 0)
        parts += QStringLiteral("%1 bytes").arg(rule.fixedLength);
    if (rule.endsWithDetection)
        parts += QStringLiteral("detection");
    QString text = parts.isEmpty() ? QStringLiteral("Ends: direction alone")
                                   : QStringLiteral("Ends: ") + parts.join(QStringLiteral(", "));
    if (rule.checksum)
        text += QStringLiteral(" \u00B7 ") +
                QString::fromLatin1(Checksum::RowOf(rule.checksum->kind).caption);
    return text;
}
