// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TrafficCaptures.h"

#include "BarMargins.h"
#include "CaptureReader.h"
#include "CaptureSource.h"
#include "FileName.h"
#include "MdGetSpecialFolders.h"
#include "NamedButton.h"
#include "PathParts.h"
#include "PlainText.h"
#include "TrafficActions.h"
#include "TrafficBookmarking.h"
#include "UserPrompts.h"
#include "frmTraffic.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QMimeData>
#include <QRadioButton>
#include <QUrl>

#include <utility>

/// What the work of opening hands over; shared with its thread, which may go on when nobody waits
/// for it.
struct TrafficCaptures::Opened {
    Result result;
    std::shared_ptr<const InputDevice> file;
    std::shared_ptr<const TelegramSource> source;
    bool twoChannels = false;
    QList<CaptureBookmark> bookmarks;
};

namespace
{

/// One file, of whatever name: its content tells.
QString PathIn(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    return urls.size() == 1 && urls.first().isLocalFile()
               ? FileName::Decode(QByteArray::fromPercentEncoding(
                     urls.first().path(QUrl::FullyEncoded).toLatin1()))
               : QString();
}

/// The ports are known, as a rule, once the first packet is read.
Result CountChannels(const InputDevice &file, bool &two)
{
    CaptureReader reader(file);
    Result begun = reader.Begin();
    CapturePacket packet;
    if (!begun.Failed() && reader.Next(packet) == CaptureReader::Step::Packet)
        two = reader.Ports().size() > 1;
    return begun;
}

} // namespace

TrafficCaptures::TrafficCaptures(frmTraffic &window, TrafficActions &actions,
                                 TrafficBookmarking &bookmarking, TrafficCaptureParts parts)
    : m_window(window), m_actions(actions), m_bookmarking(bookmarking), m_parts(std::move(parts))
{
    MakeBar();
    window.setAcceptDrops(true);
    window.installEventFilter(this);
    actions.On(TrafficCommand::OpenCapture, [this] { Choose(); });
    actions.On(TrafficCommand::ShowRecord, [this] { ShowRecord(); });
    actions.On(TrafficCommand::SaveCapture, [this] { Save(); });
    actions.On(TrafficCommand::JudgeCapture, [this] { m_parts.Judge(m_path, m_window); });
    actions.On(TrafficCommand::ReplayCapture, [this] { m_parts.Replay(m_path); });
    bookmarking.Show(m_parts.bookmarks);
    ShowState();
}

void TrafficCaptures::MakeBar()
{
    m_bar = new QWidget;
    m_bar->setObjectName(QStringLiteral("barSource"));
    m_bar->setAccessibleName(QStringLiteral("What is shown"));
    rdoRecord = new QRadioButton(QStringLiteral("Live rec&ord"));
    rdoRecord->setObjectName(QStringLiteral("rdoRecord"));
    rdoCapture = new QRadioButton;
    rdoCapture->setObjectName(QStringLiteral("rdoCapture"));
    QPushButton *cmdJudge = NamedButton("cmdJudge", "&Judge");
    QPushButton *cmdReplay = NamedButton("cmdReplay", "Replay");
    connect(rdoRecord, &QRadioButton::clicked, this, &TrafficCaptures::ShowRecord);
    connect(rdoCapture, &QRadioButton::clicked, this, &TrafficCaptures::ShowCapture);
    auto *row = new QHBoxLayout(m_bar);
    row->setContentsMargins(BarMargins);
    row->addWidget(rdoRecord);
    row->addWidget(rdoCapture, 1);
    const auto follow = [row](QPushButton *button, QAction &action) {
        button->setAutoDefault(true); // Enter presses it while it has the focus
        connect(button, &QPushButton::clicked, &action, &QAction::trigger);
        connect(&action, &QAction::enabledChanged, button, &QWidget::setEnabled);
        row->addWidget(button);
    };
    follow(cmdJudge, m_actions.Of(TrafficCommand::JudgeCapture));
    follow(cmdReplay, m_actions.Of(TrafficCommand::ReplayCapture));
    m_bar->hide();
    m_window.AddBar(*m_bar, true);
}

void TrafficCaptures::Choose()
{
    const QString &folder = m_parts.folder;
    const bool canBeShown = !folder.isEmpty() && FileName::IsText(folder);
    const QString path =
        m_parts.prompts.ChooseFile({.purpose = FileDialogRequest::Purpose::Open,
                                    .dialog = QStringLiteral("dlgOpenCapture"),
                                    .title = QStringLiteral("Open Capture"),
                                    .filter = QStringLiteral("Captures | *.pcapng *.pcap"),
                                    .folder = canBeShown ? folder : MdGetSpecialFolders()});
    if (path.isEmpty())
        return;
    m_parts.folder = PathParts::Folder(path);
    Open(path);
}

/// One that is opened again keeps the bookmarks that it has here.
void TrafficCaptures::Open(const QString &path)
{
    const QString absolute = m_parts.files.AbsolutePath(path);
    if (absolute != m_path && !AskSaveBookmarks())
        return;
    const auto opened = std::make_shared<Opened>();
    const QString name = FileName::Shown(PathParts::FileName(path));
    const auto work = [opened, path, &files = m_parts.files](WorkProgress &progress) {
        FileSystem::Opened file = files.Open(path);
        opened->result = file.result;
        if (opened->result.Failed())
            return;
        opened->file = std::move(file.device);
        opened->result = CountChannels(*opened->file, opened->twoChannels);
        opened->bookmarks = CaptureBookmarks::In(*opened->file);
        if (progress.Settle())
            opened->source = std::make_shared<CaptureSource>(opened->file);
    };
    const bool done = m_parts.prompts.DoWork(QStringLiteral("Opening ") + name, work);
    if (!done || (!opened->source && !opened->result.Failed())) // cancelled
        return;
    if (opened->result.Failed()) {
        m_parts.prompts.ShowMessage(
            CriticalMessage(QStringLiteral("The capture %1 cannot be opened. %2")
                                .arg(name, opened->result.Cause())));
        return;
    }
    m_capture = opened;
    if (std::exchange(m_path, absolute) != absolute || !m_bookmarks->AreUnsaved()) {
        m_bookmarks = std::make_shared<TelegramBookmarks>();
        for (CaptureBookmark &bookmark : opened->bookmarks)
            bookmark.note = PlainText(bookmark.note);
        m_bookmarks->Replace(opened->bookmarks);
    }
    ShowCapture();
}

bool TrafficCaptures::AskSaveBookmarks()
{
    if (!m_capture || !m_bookmarks->AreUnsaved())
        return true;
    const PromptAnswer answer = m_parts.prompts.ShowMessage(
        {.text = QStringLiteral("Save changes to the bookmarks of %1?").arg(Name()),
         .icon = PromptIcon::Question,
         .buttons = PromptButtons::YesNoCancel,
         .defaultAnswer = PromptAnswer::No,
         .note = QStringLiteral("They are saved with a copy of the capture.")});
    return answer == PromptAnswer::Yes ? SaveCopy() : answer == PromptAnswer::No;
}

void TrafficCaptures::Save()
{
    if (m_showsCapture)
        SaveCopy();
    else
        m_parts.SaveRecord();
}

bool TrafficCaptures::SaveCopy()
{
    const bool saved =
        m_parts.SaveCopy(m_capture->file, PathParts::FileName(m_path), m_bookmarks->All());
    if (saved)
        m_bookmarks->NoteSaved();
    return saved;
}

QString TrafficCaptures::Name() const
{
    return FileName::Shown(PathParts::FileName(m_path));
}

void TrafficCaptures::ShowCapture()
{
    m_showsCapture = true;
    m_parts.ShowCapture(m_capture->source, Name());
    m_bookmarking.Show(m_bookmarks);
    ShowState();
}

void TrafficCaptures::ShowRecord()
{
    if (std::exchange(m_showsCapture, false)) {
        m_parts.ShowRecord();
        m_bookmarking.Show(m_parts.bookmarks);
    }
    ShowState();
}

bool TrafficCaptures::TwoChannels() const
{
    return m_showsCapture ? m_capture->twoChannels : m_parts.RecordHasTwoChannels();
}

void TrafficCaptures::ShowState()
{
    const QString name = Name();
    m_bar->setVisible(m_capture != nullptr);
    rdoRecord->setChecked(!m_showsCapture);
    rdoCapture->setChecked(m_showsCapture);
    rdoCapture->setText(QString(name).replace(u'&', QStringLiteral("&&")));
    m_window.setWindowTitle(m_showsCapture ? QStringLiteral("Traffic - ") + name
                                           : QStringLiteral("Traffic"));
    const QString noCapture =
        m_showsCapture ? QString() : QStringLiteral("No capture is opened here.");
    m_actions.Enable(TrafficCommand::JudgeCapture, noCapture);
    m_actions.Enable(TrafficCommand::ReplayCapture, noCapture);
    m_actions.Enable(TrafficCommand::ShowRecord,
                     m_showsCapture ? QString() : QStringLiteral("It is shown."));
}

bool TrafficCaptures::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::DragEnter) {
        auto &drag = static_cast<QDragEnterEvent &>(*event);
        if (!PathIn(*drag.mimeData()).isEmpty())
            drag.acceptProposedAction();
        return true;
    }
    if (event->type() == QEvent::Drop) {
        auto &drop = static_cast<QDropEvent &>(*event);
        drop.acceptProposedAction();
        // Whoever let it go waits for the answer, not for a box.
        QMetaObject::invokeMethod(
            this, [this, path = PathIn(*drop.mimeData())] { Open(path); }, Qt::QueuedConnection);
        return true;
    }
    return QObject::eventFilter(watched, event);
}
