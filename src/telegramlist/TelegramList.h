// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "DisplaySettings.h"
#include "DrawnTable.h"
#include "MouseHold.h"
#include "TelegramCells.h"
#include "TelegramPainter.h"
#include "TelegramSelection.h"

#include <QBasicTimer>
#include <QDate>
#include <QPointer>

#include <functional>
#include <memory>
#include <optional>

class QHelpEvent;
class TelegramHeader;
class TelegramRows;

/// Telegrams, a row each, of which there may be any number: it asks only for those that are seen.
/// One row is in hand, any may be chosen. While it follows, the newest row is in sight; it follows
/// until the user goes elsewhere, and again at the end.
class TelegramList final : public DrawnTable
{
    Q_OBJECT

  public:
    explicit TelegramList(QWidget *parent = nullptr);
    ~TelegramList() override;

    /// Null for none. They may go before the list.
    void Show(TelegramRows *rows);
    void SetColours(const DisplaySettings &display);
    TelegramHeader &Header() const { return *m_header; }

    /// The row in hand, or -1.
    qint64 Current() const { return m_current; }
    const TelegramSelection &Selection() const { return m_selection; }
    /// Takes a row in hand, chooses it alone and brings it to sight.
    void GoTo(qint64 row);
    void SelectAll();
    /// Chooses the rows from one to the other; the latter is taken in hand.
    void SelectRange(qint64 from, qint64 to);
    bool Follows() const { return m_follows; }
    void SetFollows(bool follows);

    /// What differences count from; MarkedRow counts from the row in hand.
    void SetBase(TelegramBase base);
    TelegramBase Base() const { return m_base; }

    /// What the user has noted of a telegram, shown among its marks; none by itself. Refresh when
    /// it says other things.
    std::function<std::optional<QString>(const Telegram &)> NoteOf;
    void Refresh();
    /// The note as it is shown; empty if there is none.
    QString NoteFor(const Telegram &telegram) const;

    /// What stands in a row, in the columns that are shown, for who copies it; empty if it is not
    /// at hand.
    QStringList Texts(qint64 row) const;

    QStringList Headings() const override;
    qint64 RowCount() const override;
    Seen SeenRows() const override;
    QString CellText(qint64 row, int column) const override;
    QRect CellRect(qint64 row, int column) const override;
    qint64 CurrentRow() const override;
    bool IsChosen(qint64 row) const override;
    qint64 ChosenCount() const override { return m_selection.Count(); }
    void Choose(qint64 row) override;

  Q_SIGNALS:
    /// Another row is in hand, or what stands in it came or has grown.
    void CurrentChanged(qint64 row);
    void SelectionChanged();
    void FollowsChanged(bool follows);
    /// Enter or a double click: the row in hand is to be looked at closely.
    void DetailsWanted();

  protected:
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

  private:
    qint64 First() const;
    qint64 End() const;
    qint64 RowsSeen() const;
    qint64 LastTop() const;
    const Telegram *RowAt(qint64 row) const;
    void TakeChange();
    void TakeReset();
    void TellCurrent();
    void ScrollTo(qint64 top);
    void ScrollByHand(qint64 top);
    void BringToSight(qint64 row);
    void SetBars();
    void MakeFace() override;
    void SetSuitedWidths();
    bool NoteWidths(const TelegramPainter::Row &row);
    qint64 RowAtPlace(int y) const;
    void Move(qint64 row, Qt::KeyboardModifiers modifiers);
    void Press(qint64 row, Qt::KeyboardModifiers modifiers);
    std::optional<qint64> TargetOf(const QKeyEvent &event) const;
    std::optional<qint64> DifferenceOf(qint64 row, const Telegram &telegram) const;
    bool IsOfToday(qint64 wall) const;
    QString CellTextOf(qint64 row, const Telegram &telegram, TelegramColumn column) const;
    QString MarksOf(const Telegram &telegram, bool withGap) const;
    TelegramPainter::Cells CellsAt(qreal top) const;
    void ShowToolTip(QHelpEvent &event);

    QPointer<TelegramRows> m_rows;
    DisplaySettings m_display;
    TelegramHeader *m_header;
    std::unique_ptr<TelegramPainter> m_painter;
    MouseHold m_hold;
    QBasicTimer m_dragging; ///< past the edge
    TelegramSelection m_selection;
    qint64 m_top = 0; ///< the first row that is seen
    qint64 m_current = -1;
    int m_wheel = 0;      ///< what has not made a row yet
    qint64 m_anchor = -1; ///< where the range that is being chosen began
    bool m_follows = true;
    bool m_setting = false;                 ///< the scroll bars, not the user
    TelegramColumns::Widths m_seenWidths{}; ///< of the texts that were seen
    TelegramBase m_base = TelegramBase::RowBefore;
    std::optional<qint64> m_baseTime; ///< of the marked row
    QDate m_today;
    qint64 m_dayBegins = 0; ///< ns since 1970, local time
    qint64 m_dayEnds = 0;
};
