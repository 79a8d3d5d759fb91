// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "DevicePane.h"

#include "PlainText.h"
#include "PortFinder.h"

#include <QPromise>

#include <chrono>
#include <thread>
#include <utility>

namespace
{

/// As long as a hand that types may rest.
constexpr std::chrono::milliseconds Pause{250};

} // namespace

DevicePane::DevicePane(std::shared_ptr<const PortFinder> finder) : m_finder(std::move(finder))
{
    setObjectName(QStringLiteral("txtDetails"));
    setAccessibleName(QStringLiteral("What is known of the device"));
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    m_pause.setSingleShot(true);
    m_pause.setInterval(Pause);
    connect(&m_pause, &QTimer::timeout, this, [this] { Examine(m_facts, Examination::Facts, {}); });
    connect(&m_facts, &QFutureWatcherBase::finished, this, [this] { ShowReport(m_facts); });
    connect(&m_trial, &QFutureWatcherBase::finished, this, [this] {
        ShowReport(m_trial);
        Q_EMIT TrialChanged();
    });
}

QSize DevicePane::sizeHint() const
{
    constexpr int Rows = 8;
    return {QPlainTextEdit::sizeHint().width(), Rows * fontMetrics().lineSpacing()};
}

void DevicePane::Show(const QString &device)
{
    m_device = device;
    m_facts.setFuture({});
    m_pause.stop();
    setPlainText(device.isEmpty() ? QStringLiteral("There is no device.") : QString());
    if (!device.isEmpty())
        m_pause.start();
    Q_EMIT TrialChanged();
}

void DevicePane::Try(const QString &settings)
{
    if (!MayTry())
        return;
    m_pause.stop();
    m_facts.setFuture({});
    setPlainText(QStringLiteral("Trying %1 ...").arg(PlainText(m_device)));
    Examine(m_trial, Examination::Try, settings);
    Q_EMIT TrialChanged();
}

/// The thread keeps what it needs; the watcher forgets it when another one is begun.
void DevicePane::Examine(Watcher &watcher, Examination examination, const QString &settings)
{
    const auto promise = std::make_shared<QPromise<DoctorReport>>();
    promise->start();
    watcher.setFuture(promise->future());
    std::thread([promise, finder = m_finder, device = m_device, examination, settings] {
        promise->addResult(ExaminePort(*finder, device, examination, settings));
        promise->finish();
    }).detach();
}

/// Unless another device has been named meanwhile.
void DevicePane::ShowReport(const Watcher &watcher)
{
    if (watcher.future().resultCount() > 0 && watcher.result().port == m_device)
        setPlainText(watcher.result().Text().trimmed());
}
