// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RichTextCaret.h"
#include "RichTextLayout.h"
#include "RichTextPainter.h"
#include "TextControl.h"

#include <QTimer>

#include <optional>

class RichTextModel;

/// Shows a rich-text model; what keys and mouse do to it is the derived class's work. It follows
/// the end of the text while it is scrolled to its end; otherwise it stays on the text it shows,
/// also when the front is cut. While hidden it does nothing; it lays out when shown. The model must
/// outlive it.
class RichTextView : public TextControl
{
    Q_OBJECT

  public:
    explicit RichTextView(RichTextModel &model, QWidget *parent = nullptr);

    RichTextModel &Model() const { return m_model; }
    /// Up to date.
    const RichTextLayout &Layout();

    /// Shows the stored colours, as the palette wants them; until then all is as it is stored.
    void SetColours(const DisplaySettings &stored);
    /// Whether control characters are pictures, those of line breaks too, or boxes, which is so at
    /// first.
    void SetShowsControls(bool shows);
    bool ShowsControls() const { return m_showsControls; }
    /// Scrolls, if need be, until the selection is in sight and away from the edges.
    void ScrollToSelection();
    void ScrollToPosition(qint64 position);

    /// Where a character stands in the viewport, visible or not.
    QRectF CharacterRect(qint64 position);
    /// The part of the viewport that shows the selection; its rows as far as they are in sight.
    QRect SelectionRect();
    /// The place between two characters that is nearest to a point of the viewport.
    qint64 PositionAt(const QPointF &point);

  protected:
    /// In the up-to-date layout.
    Cell CellAt(const QPointF &point);
    /// The caret, with an up-to-date layout under it.
    RichTextCaret &ReadyCaret();
    /// Scrolls the caret into sight and lets it blink anew.
    void ShowCaret();
    /// In the viewport, as of the last layout.
    QRectF CaretRect() const override { return m_caretRect; }

    void RenewPainter() override;
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;

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
    void FollowPalette();
    qreal PaintedWidth() const;
    void LayOut();
    void RepaintIfChanged();
    void Announce();
    void PlaceCaretRect();
    void PaintCaret(QPainter &painter) const;

    RichTextModel &m_model;
    RichTextLayout m_layout;
    RichTextCaret m_caret;
    RichTextPainter m_painter;
    std::optional<DisplaySettings> m_stored; ///< the colours to show
    ViewColours m_colours;
    bool m_showsControls = false;

    qint64 m_top = 0; ///< position that the first row shows, unless the end is followed
    bool m_followsEnd = true;
    bool m_adjusting = false; ///< the scroll bar is moved by the program, not by the user
    Shown m_shown;
    qint64 m_announcedCaret = 0;
    qint64 m_announcedEnd = 0;
    QTimer m_announcing; ///< until it has run out, what comes waits to be told

    QRectF m_caretRect;
};
