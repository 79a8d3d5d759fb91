// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "StatusPanels.h"

#include "ClickLabel.h"
#include "CommConfiguration.h"
#include "PlainText.h"

#include <QEvent>

namespace
{

/// What a narrow window leaves the communication status, in pixels.
constexpr int LeastStatusWidth = 60;

constexpr std::array<const char *, 6> ToolTips = {
    "Communication Status", "COM Port(s) Active", "Baud Rate", "Parity", "Start Bits", "Stop Bits"};

} // namespace

StatusPanels::StatusPanels(QWidget *parent) : QStatusBar(parent)
{
    setSizeGripEnabled(false);
    for (size_t i = 0; i < m_panels.size(); ++i) {
        auto *panel = new ClickLabel;
        panel->setObjectName(QStringLiteral("sbStatusBar_%1").arg(i + 1));
        panel->setToolTip(QLatin1String(ToolTips[i]));
        panel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
        panel->setTextFormat(Qt::PlainText);
        panel->setMinimumWidth(i == 0 ? LeastStatusWidth : 0);
        addWidget(panel, i == 0 ? 1 : 0);
        if (i > 0)
            connect(panel, &ClickLabel::Clicked, this, &StatusPanels::SettingsClicked);
        m_panels[i] = panel;
    }
    ShowHands(true);
    window()->installEventFilter(this);
}

/// The pointing hand over what a click acts on.
void StatusPanels::ShowHands(bool clicksAct)
{
    for (size_t i = 1; i < m_panels.size(); ++i)
        m_panels[i]->setCursor(clicksAct ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

/// Under a modal dialog no click acts.
bool StatusPanels::eventFilter(QObject *window, QEvent *event)
{
    if (event->type() == QEvent::WindowBlocked || event->type() == QEvent::WindowUnblocked)
        ShowHands(event->type() == QEvent::WindowUnblocked);
    return QStatusBar::eventFilter(window, event);
}

void StatusPanels::ShowPortStatus(const QString &text)
{
    m_panels[0]->setText(PlainText(text));
}

void StatusPanels::ShowSettings(const CommConfiguration &comm)
{
    QString ports = QStringLiteral("COM%1").arg(comm.PortA());
    if (comm.TwoPorts())
        ports += QStringLiteral(" / COM%1").arg(comm.PortB());
    const LineTexts texts = comm.Texts();
    m_panels[1]->setText(ports);
    m_panels[2]->setText(texts.speed);
    m_panels[3]->setText(texts.parity);
    m_panels[4]->setText(texts.dataBits);
    m_panels[5]->setText(texts.stopBits);
}
