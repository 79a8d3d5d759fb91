// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "frmReplay.h"

#include "NamedButton.h"

#include <QComboBox>
#include <QDateTime>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QShortcut>
#include <QVBoxLayout>

#include <array>

namespace
{

using State = MdReplay::State;

constexpr qint64 NanosecondsOfASecond = 1'000'000'000;
/// A shorter silence needs no word.
constexpr qint64 LeastSilence = 2 * NanosecondsOfASecond;
/// Of the bar; a file may have more bytes than it can count.
constexpr int WholeBar = 1000;

struct SpeedRow {
    ReplaySpeed speed;
    const char *caption;
};

constexpr std::array SpeedRows = {SpeedRow{ReplaySpeed::Own, "Its own pace"},
                                  SpeedRow{ReplaySpeed::TenTimes, "Ten times as fast"},
                                  SpeedRow{ReplaySpeed::AtOnce, "At once"}};

/// Such as 1:02:03.
QString Duration(qint64 nanoseconds)
{
    const qint64 seconds = nanoseconds / NanosecondsOfASecond;
    return QStringLiteral("%1:%2:%3")
        .arg(seconds / 3600)
        .arg(seconds / 60 % 60, 2, 10, QLatin1Char('0'))
        .arg(seconds % 60, 2, 10, QLatin1Char('0'));
}

/// Without those that change it would be read aloud again and again.
void SetText(QLabel &label, const QString &text)
{
    if (label.text() != text)
        label.setText(text);
}

QLabel *NamedLabel(const char *name)
{
    auto *label = new QLabel;
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

frmReplay::frmReplay(MdReplay &replay, QWidget *parent)
    : QDialog(parent),
      m_replay(replay),
      lblState(NamedLabel("lblState")),
      lblTime(NamedLabel("lblTime")),
      lblPlayed(NamedLabel("lblPlayed")),
      prgPlace(new QProgressBar),
      cboSpeed(new QComboBox),
      cmdPause(NamedButton("cmdPause", "&Pause")),
      cmdNext(NamedButton("cmdNext", "&Next Telegram")),
      cmdStop(NamedButton("cmdStop", "&Stop")),
      cmdClose(NamedButton("cmdClose", "Close"))
{
    setObjectName(QStringLiteral("frmReplay"));
    MakeLabels();
    MakeButtons();
    LayOut();
    m_timer.setInterval(RefreshMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, &frmReplay::Refresh);
    connect(&m_replay, &MdReplay::Changed, this, &frmReplay::Refresh);
    Refresh();
}

void frmReplay::MakeLabels()
{
    prgPlace->setObjectName(QStringLiteral("prgPlace"));
    prgPlace->setAccessibleName(QStringLiteral("How much of the file has been played"));
    prgPlace->setRange(0, WholeBar);
    cboSpeed->setObjectName(QStringLiteral("cboSpeed"));
    for (const SpeedRow &row : SpeedRows)
        cboSpeed->addItem(QString::fromLatin1(row.caption), int(row.speed));
    cboSpeed->setCurrentIndex(cboSpeed->findData(int(m_replay.Speed())));
    connect(cboSpeed, &QComboBox::activated, this,
            [this] { m_replay.SetSpeed(ReplaySpeed(cboSpeed->currentData().toInt())); });
}

void frmReplay::MakeButtons()
{
    cmdPause->setDefault(true);
    cmdNext->setToolTip(QStringLiteral("Do not wait for it"));
    connect(cmdPause, &QPushButton::clicked, this, &frmReplay::PauseOrGoOn);
    connect(cmdNext, &QPushButton::clicked, this, [this] {
        m_replay.Skip();
        Refresh();
    });
    connect(cmdStop, &QPushButton::clicked, this, [this] { m_replay.Stop(); });
    // The key of the main window, which is not active as long as this one is.
    connect(new QShortcut(QKeySequence(QStringLiteral("Shift+F5")), this), &QShortcut::activated,
            cmdStop, &QPushButton::click);
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
}

void frmReplay::LayOut()
{
    auto *speed = new QLabel(QStringLiteral("Sp&eed:"));
    speed->setBuddy(cboSpeed);
    auto *rows = new QFormLayout;
    rows->addRow(QStringLiteral("Time of the capture:"), lblTime);
    rows->addRow(QStringLiteral("Played:"), lblPlayed);
    rows->addRow(speed, cboSpeed);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *button : {cmdPause, cmdNext, cmdStop, cmdClose})
        buttons->addWidget(button);
    auto *column = new QVBoxLayout(this);
    column->addWidget(lblState);
    column->addWidget(prgPlace);
    column->addLayout(rows);
    auto *note = NamedLabel("lblNote");
    note->setText(QStringLiteral("Nothing is sent, neither by hand nor as an answer."));
    column->addWidget(note);
    column->addLayout(buttons);
}

void frmReplay::showEvent(QShowEvent *event)
{
    Refresh();
    m_timer.start();
    QDialog::showEvent(event);
}

void frmReplay::hideEvent(QHideEvent *event)
{
    m_timer.stop();
    QDialog::hideEvent(event);
}

void frmReplay::reject()
{
    m_replay.Stop();
    QDialog::reject();
}

void frmReplay::Refresh()
{
    const CaptureReplay::Position position = m_replay.Where();
    const State state = m_replay.Stands();
    const bool plays = state == State::Playing;
    setWindowTitle(QStringLiteral("Replay ") + m_replay.Name());
    ShowState(position);
    const qint64 size = qMax<qint64>(1, m_replay.Size());
    prgPlace->setValue(
        state == State::AtEnd ? WholeBar : int(double(position.place) / double(size) * WholeBar));
    SetText(*lblTime,
            position.wall == 0
                ? QStringLiteral("-")
                : QLocale().toString(QDateTime::fromMSecsSinceEpoch(position.wall / 1'000'000),
                                     QStringLiteral("yyyy-MM-dd hh:mm:ss")));
    SetText(*lblPlayed, Duration(position.played));
    const bool over = state == State::AtEnd || state == State::Stopped;
    const QString pause = over              ? QStringLiteral("&Play Again")
                          : position.paused ? QStringLiteral("&Continue")
                                            : QStringLiteral("&Pause");
    if (cmdPause->text() != pause)
        cmdPause->setText(pause);
    cmdNext->setEnabled(plays);
    cmdStop->setEnabled(plays || state == State::Opening);
}

void frmReplay::ShowState(const CaptureReplay::Position &position)
{
    QString text;
    switch (m_replay.Stands()) {
    case State::Opening:
        text = QStringLiteral("Opening");
        break;
    case State::AtEnd:
        text = QStringLiteral("At the end; communication is stopped");
        break;
    case State::Stopped:
        text = QStringLiteral("Stopped");
        break;
    default:
        text = position.paused ? QStringLiteral("Paused") : QStringLiteral("Playing");
        if (position.silence.value_or(0) >= LeastSilence)
            text = QStringLiteral("Playing; the next telegram comes in ") +
                   Duration(*position.silence);
    }
    SetText(*lblState, text);
    setAccessibleDescription(text);
}

void frmReplay::PauseOrGoOn()
{
    const State state = m_replay.Stands();
    if (state == State::AtEnd || state == State::Stopped)
        m_replay.Again();
    else
        m_replay.SetPaused(!m_replay.Where().paused);
    Refresh();
}
