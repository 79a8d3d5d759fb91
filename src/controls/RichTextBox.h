// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "controls/RichTextCaret.h"
#include "controls/RichTextLayout.h"
#include "controls/RichTextPainter.h"

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <QTimer>

#include <memory>

class QMenu;
class RichTextModel;

/// Shows a rich-text model and lets the user select, copy and, unless the model is read-only,
/// type. It follows the end of the text while it is scrolled to its end; otherwise it stays on the
/// text it shows, also when the front is cut. While hidden it does nothing; it lays out when shown.
/// The model must outlive it.
class RichTextBox final : public QAbstractScrollArea
{
    Q_OBJECT

  public:
    explicit RichTextBox(RichTextModel &model, QWidget *parent = nullptr);

    RichTextModel &Model() const { return m_model; }
    /// Up to date.
    const RichTextLayout &Layout();

    /// The style of what the user types.
    void SetTypingStyle(const TextStyle &style) { m_typingStyle = style; }
    /// 0x00BBGGRR.
    void SetBackground(qint32 colour);
    /// Scrolls, if need be, until the selection is in sight and away from the edges.
    void ScrollToSelection();
    void ScrollToPosition(qint64 position);

    /// Where a character stands in the viewport, visible or not.
    QRectF CharacterRect(qint64 position);
    /// The place between two characters that is nearest to a point of the viewport.
    qint64 PositionAt(const QPointF &point);

    void Copy();
    void Cut();
    void Paste();
    void Delete();
    void SelectAll();
    /// Cut, Copy, Paste, Delete and Select All, as far as they can do something now.
    std::unique_ptr<QMenu> MakeContextMenu();

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

  Q_SIGNALS:
    /// A key or a mouse button was released; start of the selection, counted from the content's
    /// begin.
    void CaretReleased(qsizetype index);

  protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void inputMethodEvent(QInputMethodEvent *event) override;

  private:
    /// All that decides what the viewport shows; while it stays the same nothing is painted.
    struct Shown {
        quint64 editRevision = 0;
        qint64 from = -1;
        qint64 to = -1;
        qint64 anchor = -1;
        qint64 caret = -1;
        int columns = 0;

        bool operator==(const Shown &) const = default;
    };

    void FollowModel();
    void LayOut();
    void RepaintIfChanged();
    void RenewPainter();
    qsizetype FullRows() const;
    int FittingColumns() const;
    void ScrollToRow(qsizetype row);
    void ScrollToCaret();
    void ScrollInSight(qsizetype row);

    QRectF CellRect(qsizetype row, int column) const;
    QRectF CaretRect() const;
    void PaintCaret(QPainter &painter) const;
    void RestartBlinking();
    void ToggleCaret();

    qsizetype RowAt(qreal y) const;
    double ColumnAt(qreal x) const;
    void Press(const QMouseEvent &event, RichTextCaret::Unit unit);
    void DragOn();
    void ReleaseCaret();
    void PublishSelection();

    /// Does what a key asks for, or, when not in earnest, only tells whether it would.
    bool HandleKey(const QKeyEvent &event, bool inEarnest);
    bool HandleMovementKey(const QKeyEvent &event, bool inEarnest);
    bool HandleCommandKey(const QKeyEvent &event, bool inEarnest);
    bool HandleEditingKey(const QKeyEvent &event, bool inEarnest);
    void Insert(const QString &text);
    void MoveCaret(RichTextCaret::Movement movement, bool select);
    void EraseTowards(RichTextCaret::Movement movement);
    bool CanEdit() const;

    RichTextModel &m_model;
    RichTextLayout m_layout;
    RichTextCaret m_caret;
    RichTextPainter m_painter;
    qreal m_pixelRatio = 1;
    TextStyle m_typingStyle;

    qint64 m_top = 0; ///< position that the first row shows, unless the end is followed
    bool m_followsEnd = true;
    bool m_adjusting = false; ///< the scroll bar is moved by the program, not by the user
    Shown m_shown;

    QTimer m_blinking;
    bool m_caretVisible = false;
    QTimer m_dragging;
    QPointF m_mouse;
    QElapsedTimer m_sinceDoubleClick;
    QPointF m_doubleClick;
};
