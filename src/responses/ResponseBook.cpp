// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ResponseBook.h"

#include "BackgroundWork.h"
#include "ResponseScan.h"
#include "TelegramMail.h"
#include "TelegramSource.h"

#include <QDateTime>
#include <QDeadlineTimer>

#include <atomic>
#include <utility>

namespace
{

constexpr int FollowMs = 250;
/// Reads and writes between two looks whether the work is wanted, some 10 ms.
constexpr qint64 ItemsOfALook = 65'536;
constexpr qint64 NanosecondsOfAMs = 1'000'000;

qint64 Now()
{
    return QDateTime::currentMSecsSinceEpoch() * NanosecondsOfAMs;
}

} // namespace

/// What counts, on the thread of its own.
struct ResponseBook::Worker {
    explicit Worker(const ResponseQuestion &asked)
        : question(asked), scan(asked.source, asked.rule, asked.limits)
    {
    }

    const ResponseQuestion question;
    std::atomic<bool> wanted = true;
    ResponseScan scan;
    ResponseStatistics statistics;
    bool hasSeenAll = false;

    Report ReportOf(const std::optional<ResponseKey> &chosen) const;
};

/// A question that waits for longer than the limit has no answer, whatever comes behind it.
ResponseBook::Report ResponseBook::Worker::ReportOf(const std::optional<ResponseKey> &chosen) const
{
    Report report;
    report.rows = statistics.Rows();
    if (question.source->Grows()) {
        for (const ResponseKey &key : scan.Overdue(Now())) {
            for (ResponseRow &row : report.rows)
                row.unanswered += row.key == key ? 1 : 0;
        }
    }
    if (chosen)
        report.picture = statistics.Picture(*chosen);
    report.twoChannels = scan.TwoChannels();
    report.isWhole = hasSeenAll;
    const TelegramSource::Progress progress =
        TelegramSource::ProgressAt(question.source->Parts(), scan.PartNumber(), scan.Read());
    report.read = progress.read;
    report.whole = progress.whole;
    return report;
}

ResponseBook::ResponseBook() : m_mail(std::make_shared<TelegramMail<ResponseBook>>(this))
{
    m_timer.setInterval(FollowMs);
    m_timer.setTimerType(Qt::CoarseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        if (!m_report.isWhole || m_question.source->Grows())
            Work();
    });
}

ResponseBook::~ResponseBook()
{
    if (m_worker)
        m_worker->wanted = false;
    m_mail->Close();
}

void ResponseBook::Show(const ResponseQuestion &question)
{
    if (m_worker)
        m_worker->wanted = false;
    const bool isOther = question.source != m_question.source;
    m_question = question;
    ++m_version;
    m_isWorking = false;
    m_worker = question.source ? std::make_shared<Worker>(question) : nullptr;
    if (isOther || !m_thread)
        m_thread = question.source ? std::make_unique<BackgroundWork>() : nullptr;
    m_report = {};
    Q_EMIT Changed();
    if (m_timer.isActive())
        Work();
}

void ResponseBook::Follow(bool follows)
{
    if (follows == m_timer.isActive())
        return;
    if (!follows) {
        m_timer.stop();
        return;
    }
    m_timer.start();
    Work();
}

void ResponseBook::Choose(const std::optional<ResponseKey> &key)
{
    if (m_chosen == key)
        return;
    m_chosen = key;
    m_report.picture.reset();
    Work();
}

void ResponseBook::Work()
{
    if (!m_worker || m_isWorking)
        return;
    m_isWorking = true;
    m_thread->Post([worker = m_worker, mail = m_mail, chosen = m_chosen, version = m_version] {
        const QDeadlineTimer pause(FollowMs);
        bool isEnd = false;
        while (!isEnd && worker->wanted && !pause.hasExpired())
            isEnd = worker->scan.Advance(worker->statistics, ItemsOfALook);
        worker->hasSeenAll = worker->hasSeenAll || isEnd;
        mail->Send([report = worker->ReportOf(chosen), version, isEnd,
                    chosen](ResponseBook &book) mutable {
            if (version != book.m_version)
                return;
            book.m_isWorking = false;
            const bool isOther = chosen != book.m_chosen;
            if (isOther)
                report.picture.reset();
            book.Take(std::move(report));
            if (isOther || (!isEnd && book.m_timer.isActive()))
                book.Work();
        });
    });
}

/// Rows tell all that a picture is made of.
void ResponseBook::Take(Report report)
{
    const bool isNew = report.rows != m_report.rows || report.isWhole != m_report.isWhole ||
                       report.picture.has_value() != m_report.picture.has_value() ||
                       (!report.isWhole && report.read != m_report.read);
    m_report = std::move(report);
    if (isNew)
        Q_EMIT Changed();
}
