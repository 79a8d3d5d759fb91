// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmSessionRecord.h"

#include "FileName.h"
#include "MdRecord.h"
#include "NamedButton.h"
#include "RecordSettings.h"
#include "RecordText.h"
#include "ScrollPage.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <array>

namespace
{

QString SinceText(const RecordState &state)
{
    if (state.since > 0)
        return RecordText::Time(state.since);
    return state.bound == 0 ? QStringLiteral("nothing is kept") : QStringLiteral("nothing yet");
}

struct FieldRow {
    const char *name;
    const char *caption;
    QString (*text)(const RecordState &state, const QString &path);
};

constexpr std::array FieldRows = {
    FieldRow{"txtSince", "Recorded since",
             [](const RecordState &state, const QString &) { return SinceText(state); }},
    FieldRow{
        "txtSize", "Size",
        [](const RecordState &state, const QString &) { return RecordText::Size(state.size); }},
    FieldRow{
        "txtTaken", "Gone before that",
        [](const RecordState &state, const QString &) { return RecordText::Size(state.taken); }},
    FieldRow{"txtState", "State",
             [](const RecordState &state, const QString &) {
                 if (state.bound == 0)
                     return QStringLiteral("switched off");
                 return state.ended.Failed() ? QStringLiteral("ended: ") + state.ended.Cause()
                                             : QStringLiteral("in order");
             }},
    FieldRow{"txtFolder", "Folder",
             [](const RecordState &, const QString &path) { return FileName::Shown(path); }},
};

constexpr int LettersOfAField = 36;

/// A number that a turn of the wheel in passing does not change.
class BoundBox final : public QSpinBox
{
  protected:
    void wheelEvent(QWheelEvent *event) override
    {
        if (hasFocus())
            QSpinBox::wheelEvent(event);
        else
            event->ignore();
    }
};

} // namespace

frmSessionRecord::frmSessionRecord(MdRecord &record, const qint32 &most, QWidget *parent)
    : QDialog(parent), m_record(record), m_most(most)
{
    setObjectName(QStringLiteral("frmSessionRecord"));
    setWindowTitle(QStringLiteral("Session Record"));
    auto *page = new QWidget;
    auto *grid = new QGridLayout(page);
    grid->setContentsMargins(0, 0, 0, 0);
    MakeFields(*grid);
    MakeBound(*grid);

    cmdSave = NamedButton("cmdSave", "&Save Capture...");
    cmdSave->setAutoDefault(false);
    connect(cmdSave, &QPushButton::clicked, this, [this] { m_record.SaveCapture(); });
    QPushButton *cmdClose = NamedButton("cmdClose", "Close");
    cmdClose->setAutoDefault(false); // Enter belongs to the number
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::accept);
    auto *foot = new QHBoxLayout;
    foot->addWidget(cmdSave);
    foot->addStretch();
    foot->addWidget(cmdClose);
    auto *column = new QVBoxLayout(this);
    column->addWidget(new ScrollPage(page));
    column->addLayout(foot);

    Refresh();
    spnBound->setFocus();
    connect(&m_timer, &QTimer::timeout, this, &frmSessionRecord::Refresh);
    m_timer.start(RefreshMilliseconds);
}

void frmSessionRecord::MakeFields(QGridLayout &grid)
{
    for (const FieldRow &row : FieldRows) {
        const int place = int(m_fields.size());
        auto *field = new QLineEdit;
        field->setObjectName(QString::fromLatin1(row.name));
        field->setReadOnly(true);
        field->setMinimumWidth(field->fontMetrics().averageCharWidth() * LettersOfAField);
        auto *label = new QLabel(QString::fromLatin1(row.caption));
        label->setBuddy(field);
        grid.addWidget(label, place, 0);
        grid.addWidget(field, place, 1);
        m_fields << field;
    }
}

/// While a number is typed its first digits are no bound: it is in force with Enter, or when the
/// focus leaves.
void frmSessionRecord::MakeBound(QGridLayout &grid)
{
    spnBound = new BoundBox;
    spnBound->setObjectName(QStringLiteral("spnBound"));
    spnBound->setRange(0, RecordSettings::HighestMegabytes);
    spnBound->setSuffix(QStringLiteral(" MiB"));
    spnBound->setSpecialValueText(QStringLiteral("0 (keep nothing)"));
    spnBound->setKeyboardTracking(false);
    spnBound->setFocusPolicy(Qt::StrongFocus);
    spnBound->setValue(m_most);
    spnBound->setToolTip(QStringLiteral("The records of all Serimondes of this user together are "
                                        "kept below this size; the oldest parts go"));
    connect(spnBound, &QSpinBox::valueChanged, this, &frmSessionRecord::ChangeBound);
    auto *label = new QLabel(QStringLiteral("&Keep at most"));
    label->setBuddy(spnBound);
    const int place = grid.rowCount();
    grid.addWidget(label, place, 0);
    grid.addWidget(spnBound, place, 1, Qt::AlignLeft);
}

void frmSessionRecord::Refresh()
{
    const RecordState state = m_record.State();
    for (qsizetype i = 0; i < m_fields.size(); ++i) {
        const QString text = FieldRows[size_t(i)].text(state, m_record.Path());
        if (m_fields[i]->text() == text)
            continue;
        m_fields[i]->setText(text);
        m_fields[i]->setCursorPosition(0);
    }
    cmdSave->setEnabled(state.since > 0);
}

/// What the user has refused is not shown.
void frmSessionRecord::ChangeBound()
{
    const QSignalBlocker blocker(spnBound);
    m_record.ChangeBound(spnBound->value());
    spnBound->setValue(m_most);
    Refresh();
}
