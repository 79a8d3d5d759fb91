// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SequenceEditing.h"
#include "SequenceLayout.h"
#include "SequencePainter.h"
#include "TextControl.h"

class QLabel;

/// Shows a sequence that is being edited, and in a line below how long it is and where the caret
/// is; what keys and mouse do to it is the derived class's work.
class SequenceView : public TextControl
{
    Q_OBJECT

  public:
    explicit SequenceView(QWidget *parent = nullptr);

    const SequenceEditing &Editing() const { return m_editing; }
    /// Up to date.
    const SequenceLayout &Layout() const;

    /// Where the item of a byte stands in the viewport, visible or not.
    QRectF ItemRect(qsizetype byte) const;
    QRectF CaretRect() const override;
    void ScrollToByte(qsizetype byte);

    /// With room for so many characters and rows.
    QSize SizeOf(int columns, int rows) const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    /// Where two rows meet, the caret's place can be shown at the end of the one or the begin of
    /// the other.
    enum class RowEnd { No, Yes };

    Cell CellAt(const QPointF &point) const
    {
        return TextControl::CellAt(point, Layout().RowCount());
    }
    SequenceEditing &Edit() { return m_editing; }
    /// The row that shows the caret, and its column there.
    qsizetype CaretRow() const;
    int CaretColumn() const;
    /// Takes over what was done to the editing: scrolls the caret into sight and repaints.
    void Follow(RowEnd rowEnd = RowEnd::No);

    void RenewPainter() override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

  private:
    QString PositionText() const;
    int LineHeight() const;
    void LayOut();
    void PaintCaret(QPainter &painter) const;

    /// What a layout is made for.
    struct LaidOut {
        quint64 revision;
        int columns;
        Representation form;

        bool operator==(const LaidOut &) const = default;
    };

    SequenceEditing m_editing;
    mutable SequenceLayout m_layout;
    mutable LaidOut m_laidOut{0, 0, Representation::Ascii};
    SequencePainter m_painter;
    QLabel *lblPosition;
    bool m_caretAtRowEnd = false;
};
