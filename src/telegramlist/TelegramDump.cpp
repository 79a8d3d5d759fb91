// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "TelegramDump.h"

#include "ByteInk.h"
#include "CodePage1252.h"
#include "Common_Function.h"
#include "DrawnTableAccessible.h"
#include "FixedPitchFont.h"
#include "TelegramCells.h"
#include "TelegramText.h"
#include "ViewColours.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cmath>

namespace
{

constexpr int Margin = 4;

/// Columns of the text: where each begins, for eight bytes a row and five digits of the offset.
constexpr std::array<int, 6> Places = {0, 7, 33, 43, 77, 151};
/// Digits of a byte, and what separates it from the next.
constexpr std::array<int, 6> Pitches = {0, 3, 1, 4, 9, 0};

struct CopyForm {
    const char *name;
    const char *caption;
};

constexpr std::array<CopyForm, TelegramDump::FormCount> Copies = {{
    {"mnuCopyRows", "Copy &Rows"},
    {"mnuCopyHex", "Copy &HEX"},
    {"mnuCopyText", "Copy &Text"},
    {"mnuCopyDecimal", "Copy &Decimal"},
    {"mnuCopyBinary", "Copy &Binary"},
}};

QString OffsetText(qsizetype row)
{
    return QString::number(row * TelegramDump::BytesOfARow, 16).toUpper().rightJustified(5, u'0');
}

} // namespace

TelegramDump::TelegramDump(QWidget *parent) : DrawnTable(parent), m_hold(*viewport())
{
    setContextMenuPolicy(Qt::ActionsContextMenu);
    MakeCopies();
    MakeFace();
}

void TelegramDump::MakeCopies()
{
    for (int form = 0; form < FormCount; ++form) {
        const CopyForm &copy = Copies[size_t(form)];
        auto *action = new QAction(QString::fromLatin1(copy.caption), this);
        action->setObjectName(QString::fromLatin1(copy.name));
        if (form == int(Form::Hex))
            action->setShortcut(QKeySequence::Copy);
        action->setShortcutContext(Qt::WidgetShortcut);
        connect(action, &QAction::triggered, this,
                [this, form] { QApplication::clipboard()->setText(Copy(Form(form))); });
        addAction(action);
    }
}

void TelegramDump::Show(const Telegram &telegram)
{
    const bool grows =
        telegram.number == m_telegram.number && telegram.bytes.size() >= m_telegram.bytes.size();
    m_telegram = telegram;
    if (!grows) {
        m_caret = m_anchor = 0;
        m_chosen = false;
    }
    m_longestReads = 0;
    constexpr qsizetype RowsMeasured = 200;
    for (qsizetype row = 0; row < std::min(Rows(), RowsMeasured); ++row)
        m_longestReads = std::max(m_longestReads, ReadsOf(row).size());
    SetBars();
    if (!grows)
        verticalScrollBar()->setValue(0);
    viewport()->update();
}

void TelegramDump::SetColours(const DisplaySettings &display)
{
    m_display = display;
    SetInk();
    viewport()->update();
}

void TelegramDump::MakeFace()
{
    m_face =
        ByteFace(FixedPitchFont::ViewFont(), devicePixelRatioF(), ByteFace::Controls::Pictures);
    const QRawFont &raw = m_face.Font();
    m_rowHeight = int(std::ceil(raw.ascent() + raw.descent())) + 1;
    m_baseline = std::round(raw.ascent());
    SetInk();
    SetBars();
}

qsizetype TelegramDump::Rows() const
{
    return (m_telegram.bytes.size() + BytesOfARow - 1) / BytesOfARow;
}

qsizetype TelegramDump::Top() const
{
    return verticalScrollBar()->value();
}

qsizetype TelegramDump::RowsSeen() const
{
    return std::max<qsizetype>(1, viewport()->height() / m_rowHeight - 1); // below the headings
}

void TelegramDump::SetBars()
{
    verticalScrollBar()->setRange(0, int(std::max<qsizetype>(0, Rows() - RowsSeen())));
    verticalScrollBar()->setPageStep(int(RowsSeen()));
    const auto columns = double(Places[Reads]) + double(std::max<qsizetype>(m_longestReads, 10));
    const int width = int(columns * m_face.Advance()) + 2 * Margin;
    horizontalScrollBar()->setRange(0, std::max(0, width - viewport()->width()));
    horizontalScrollBar()->setPageStep(viewport()->width());
    horizontalScrollBar()->setSingleStep(int(m_face.Advance()) * 3);
}

QByteArrayView TelegramDump::BytesOf(qsizetype row) const
{
    const qsizetype from = std::min(row * BytesOfARow, m_telegram.bytes.size());
    return QByteArrayView(m_telegram.bytes)
        .sliced(from, std::min<qsizetype>(BytesOfARow, m_telegram.bytes.size() - from));
}

bool TelegramDump::BeginsRead(qsizetype place) const
{
    return std::binary_search(m_telegram.reads.begin(), m_telegram.reads.end(),
                              Telegram::Read{0, place},
                              [](const Telegram::Read &one, const Telegram::Read &other) {
                                  return one.place < other.place;
                              });
}

/// Each since the first one.
QString TelegramDump::ReadsOf(qsizetype row) const
{
    const qsizetype from = row * BytesOfARow;
    auto read = std::lower_bound(
        m_telegram.reads.begin(), m_telegram.reads.end(), from,
        [](const Telegram::Read &each, qsizetype place) { return each.place < place; });
    QStringList texts;
    for (; read != m_telegram.reads.end() && read->place < from + BytesOfARow; ++read)
        texts += u'+' + TelegramCells::MillisecondsText(read->time - m_telegram.time);
    return texts.join(QStringLiteral("  "));
}

QStringList TelegramDump::Headings() const
{
    return {QStringLiteral("Offset"),  QStringLiteral("HEX"),    QStringLiteral("Text"),
            QStringLiteral("Decimal"), QStringLiteral("Binary"), QStringLiteral("Reads, ms")};
}

QString TelegramDump::CellText(qint64 row, int column) const
{
    const QByteArrayView bytes = BytesOf(row);
    switch (column) {
    case Offset:
        return OffsetText(row);
    case Hex:
        return TelegramText::Hex(bytes);
    case Text:
        return TelegramText::Characters(bytes);
    case Decimal:
        return QString::fromLatin1(Common_Function::SeqToDecimalText(bytes));
    case Binary:
        return QString::fromLatin1(Common_Function::SeqToBinaryText(bytes));
    default:
        return ReadsOf(row);
    }
}

int TelegramDump::ColumnPlace(int column) const
{
    return Margin + int(Places[size_t(column)] * m_face.Advance()) - horizontalScrollBar()->value();
}

void TelegramDump::SetInk()
{
    constexpr qreal Readable = 4.5;
    m_ground = ViewColours(m_display, palette()).Ground();
    m_ink = palette().color(QPalette::Text);
    if (ViewColours::Contrast(m_ink, m_ground) < Readable)
        m_ink = ViewColours::Contrast(Qt::black, m_ground) >= Readable ? Qt::black : Qt::white;
}

void TelegramDump::PaintText(QPainter &painter, const QString &text, const QPointF &place) const
{
    painter.drawText(place + QPointF(0, m_baseline), text);
}

void TelegramDump::PaintRow(QPainter &painter, qsizetype row, qreal top) const
{
    const QByteArrayView bytes = BytesOf(row);
    const qreal advance = m_face.Advance();
    PaintText(painter, OffsetText(row), QPointF(ColumnPlace(Offset), top));
    ByteInk ink;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const qsizetype place = row * BytesOfARow + i;
        const bool chosen = m_chosen && place >= ChosenFrom() && place <= ChosenTo();
        for (int column = Hex; column <= Binary; ++column) {
            const int pitch = Pitches[size_t(column)];
            const qreal left = ColumnPlace(column) + double(i) * pitch * advance;
            const qreal width = (column == Text ? 1 : pitch - 1) * advance;
            if (chosen)
                painter.fillRect(QRectF(left, top, width, m_rowHeight),
                                 palette().color(QPalette::Highlight));
            if (place == m_caret && hasFocus() && column == Hex)
                painter.drawRect(QRectF(left - 1.5, top + 0.5, width + 2, m_rowHeight - 1));
            painter.setPen(chosen ? palette().color(QPalette::HighlightedText) : m_ink);
            if (column == Text) {
                ink.Add(m_face, uchar(bytes[i]), {left, top, advance, qreal(m_rowHeight)},
                        m_baseline);
                ink.Draw(painter, m_face, painter.pen().color());
            } else {
                PaintText(painter, CellText(row, column).mid(i * pitch, pitch - 1), {left, top});
            }
            painter.setPen(m_ink);
            if (column == Hex && place > 0 && BeginsRead(place))
                painter.drawLine(QPointF(left - advance / 2, top + 1),
                                 QPointF(left - advance / 2, top + m_rowHeight - 2));
        }
    }
    PaintText(painter, ReadsOf(row), QPointF(ColumnPlace(Reads), top));
}

void TelegramDump::paintEvent(QPaintEvent *)
{
    QPainter painter(viewport());
    painter.fillRect(viewport()->rect(), m_ground);
    painter.setFont(FixedPitchFont::ViewFont());
    QColor pale = m_ink;
    pale.setAlphaF(0.6F);
    painter.setPen(pale);
    for (int column = 0; column < ColumnCount; ++column)
        PaintText(painter, Headings()[column], QPointF(ColumnPlace(column), 0));
    painter.setPen(m_ink);
    const qsizetype end = std::min(Rows(), Top() + RowsSeen() + 1);
    for (qsizetype row = Top(); row < end; ++row)
        PaintRow(painter, row, qreal(row - Top() + 1) * m_rowHeight);
}

void TelegramDump::resizeEvent(QResizeEvent *event)
{
    SetBars();
    DrawnTable::resizeEvent(event);
}

void TelegramDump::scrollContentsBy(int, int)
{
    viewport()->update();
}

/// In whichever column; -1 for none.
qsizetype TelegramDump::ByteAt(const QPoint &place) const
{
    const qsizetype row = Top() + place.y() / m_rowHeight - 1;
    if (place.y() < m_rowHeight || row >= Rows())
        return -1;
    int column = Hex;
    while (column < Binary && place.x() >= ColumnPlace(column + 1))
        ++column;
    const qreal pitch = Pitches[size_t(column)] * m_face.Advance();
    const auto inRow = qsizetype(std::floor((place.x() - ColumnPlace(column)) / pitch));
    const qsizetype last = BytesOf(row).size() - 1;
    return row * BytesOfARow + std::clamp<qsizetype>(inRow, 0, last);
}

void TelegramDump::MoveTo(qsizetype place, bool extend)
{
    if (m_telegram.bytes.isEmpty())
        return;
    m_caret = std::clamp<qsizetype>(place, 0, m_telegram.bytes.size() - 1);
    m_chosen = extend;
    if (!extend)
        m_anchor = m_caret;
    const qsizetype row = m_caret / BytesOfARow;
    if (row < Top())
        verticalScrollBar()->setValue(int(row));
    else if (row >= Top() + RowsSeen())
        verticalScrollBar()->setValue(int(row - RowsSeen() + 1));
    viewport()->update();
    if (hasFocus())
        DrawnTableAccessible::TellCurrent(*this);
}

void TelegramDump::keyPressEvent(QKeyEvent *event)
{
    const bool extend = event->modifiers() & Qt::ShiftModifier;
    const qsizetype page = RowsSeen() * BytesOfARow;
    const qsizetype size = m_telegram.bytes.size();
    const bool all = event->modifiers() & Qt::ControlModifier;
    const qsizetype rowBegins = m_caret - m_caret % BytesOfARow;
    if (event->matches(QKeySequence::SelectAll)) {
        m_anchor = 0;
        MoveTo(size - 1, true);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
        return MoveTo(m_caret - 1, extend);
    case Qt::Key_Right:
        return MoveTo(m_caret + 1, extend);
    case Qt::Key_Up:
        return MoveTo(std::max<qsizetype>(m_caret - BytesOfARow, m_caret % BytesOfARow), extend);
    case Qt::Key_Down:
        return MoveTo(m_caret + BytesOfARow, extend);
    case Qt::Key_PageUp:
        return MoveTo(m_caret - page, extend);
    case Qt::Key_PageDown:
        return MoveTo(m_caret + page, extend);
    case Qt::Key_Home:
        return MoveTo(all ? 0 : rowBegins, extend);
    case Qt::Key_End:
        return MoveTo(all ? size - 1 : rowBegins + BytesOfARow - 1, extend);
    case Qt::Key_Escape:
        Q_EMIT Left();
        return;
    default:
        DrawnTable::keyPressEvent(event);
    }
}

void TelegramDump::mousePressEvent(QMouseEvent *event)
{
    const qsizetype byte = ByteAt(event->position().toPoint());
    if (event->button() != Qt::LeftButton || byte < 0)
        return;
    MoveTo(byte, event->modifiers() & Qt::ShiftModifier);
    m_hold.Begin();
}

void TelegramDump::mouseMoveEvent(QMouseEvent *event)
{
    const qsizetype byte = ByteAt(event->position().toPoint());
    if (m_hold.Holds() && byte >= 0 && byte != m_caret)
        MoveTo(byte, true);
}

void TelegramDump::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        m_hold.End();
}

void TelegramDump::focusInEvent(QFocusEvent *event)
{
    DrawnTable::focusInEvent(event);
    viewport()->update();
    DrawnTableAccessible::TellCurrent(*this);
}

void TelegramDump::focusOutEvent(QFocusEvent *event)
{
    DrawnTable::focusOutEvent(event);
    viewport()->update();
}

QByteArray TelegramDump::ChosenBytes() const
{
    return m_chosen ? m_telegram.bytes.sliced(ChosenFrom(), ChosenTo() - ChosenFrom() + 1)
                    : m_telegram.bytes;
}

QString TelegramDump::Copy(Form form) const
{
    const QByteArray bytes = ChosenBytes();
    switch (form) {
    case Form::Hex:
        return TelegramText::Hex(bytes);
    case Form::Text:
        return CodePage1252::ToUnicode(bytes);
    case Form::Decimal:
        return QString::fromLatin1(Common_Function::SeqToDecimalText(bytes));
    case Form::Binary:
        return QString::fromLatin1(Common_Function::SeqToBinaryText(bytes));
    case Form::Rows:
        break;
    }
    const qsizetype from = m_chosen ? ChosenFrom() / BytesOfARow : 0;
    const qsizetype to = m_chosen ? ChosenTo() / BytesOfARow + 1 : Rows();
    QString text = Headings().join(u'\t') + u'\n';
    for (qsizetype row = from; row < to; ++row) {
        for (int column = 0; column < ColumnCount; ++column)
            text += CellText(row, column) + (column + 1 < ColumnCount ? u'\t' : u'\n');
    }
    return text;
}

qint64 TelegramDump::RowCount() const
{
    return Rows();
}

DrawnTable::Seen TelegramDump::SeenRows() const
{
    return {Top(), std::min(RowsSeen(), Rows() - Top())};
}

QRect TelegramDump::CellRect(qint64 row, int column) const
{
    if (row >= 0 && (row < Top() || row > Top() + RowsSeen()))
        return {};
    const int left = ColumnPlace(column);
    const int right = column + 1 < ColumnCount ? ColumnPlace(column + 1) : viewport()->width();
    const auto line = row < 0 ? 0 : int(row - Top()) + 1;
    return {left, line * m_rowHeight, right - left, m_rowHeight};
}

qint64 TelegramDump::CurrentRow() const
{
    return m_telegram.bytes.isEmpty() ? -1 : m_caret / BytesOfARow;
}

bool TelegramDump::IsChosen(qint64 row) const
{
    return m_chosen && row >= ChosenFrom() / BytesOfARow && row <= ChosenTo() / BytesOfARow;
}

qint64 TelegramDump::ChosenCount() const
{
    return m_chosen ? ChosenTo() / BytesOfARow - ChosenFrom() / BytesOfARow + 1 : 0;
}

void TelegramDump::Choose(qint64 row)
{
    MoveTo(row * BytesOfARow, false);
}
