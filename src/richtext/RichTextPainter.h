// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "ByteInk.h"
#include "TextStyle.h"
#include "ViewColours.h"

#include <array>
#include <memory>
#include <optional>
#include <vector>

class QPainter;
class RichTextLayout;

/// Paints rows of a rich-text layout, on the screen and on paper alike, glyph by glyph without
/// shaping. Columns are a fractional number of units wide; a position is always a column times the
/// advance, never a sum of rounded cells. On a device of another resolution the caller scales.
class RichTextPainter final
{
  public:
    /// Which rows are painted, and how their selection looks; without a colour it is not shown.
    struct Part {
        qsizetype firstRow = 0;
        qsizetype rowCount = 0;
        QColor selectionBack = QColor();
        QColor selectionText = QColor();
        bool grey = false;        ///< every colour as the grey of its brightness
        ViewColours colours = {}; ///< what a stored colour is here
        qreal width = 0;          ///< units from the origin that can be painted on
    };

    /// Row heights are whole device pixels at the ratio given. Pictures of control characters are
    /// one column wide; those of CR, LF and TAB, which lay the text out, are pale and take no
    /// column: they stand behind their line, and in the room of the TAB.
    explicit RichTextPainter(const QFont &font, qreal devicePixelRatio = 1,
                             ByteFace::Controls controls = ByteFace::Controls::LaidOutBoxes);

    qreal Advance() const { return m_faces->Of(0).Advance(); }
    qreal RowHeight() const { return m_faces->rowHeight; }

    /// Where the picture of a character of a row's line break stands, from the row's top left
    /// corner. Pictures are narrower where the width leaves no room; empty if there is none.
    QRectF BreakRect(const RichTextLayout &layout, qint64 position, qreal width) const;

    /// Paints with the first row's top left corner at the painter's origin. The background is the
    /// caller's. The layout must be up to date.
    void Paint(QPainter &painter, const RichTextLayout &layout, const Part &part) const;

    static QColor ToGrey(const QColor &colour);

  private:
    /// A font in all its styles. To make one takes long, so that is done when it is first painted
    /// with, and painters of the same font and thread share them. All are as high as the regular
    /// one; a glyph that is higher overhangs its row.
    struct Faces {
        Faces(const QFont &ofFont, qreal devicePixelRatio, ByteFace::Controls shownControls);

        /// By bold (1) and italic (2).
        const ByteFace &Of(size_t style) const;

        QFont font;
        qreal ratio;
        ByteFace::Controls controls;
        mutable std::array<std::optional<ByteFace>, 4> byStyle;
        qreal rowHeight = 0;
        qreal ascent = 0;
    };
    static std::shared_ptr<const Faces> FacesOf(const QFont &font, qreal ratio,
                                                ByteFace::Controls controls);

    /// What one row shows in one face and colour.
    struct Ink {
        size_t face = 0;
        QColor colour;
        ByteInk bytes{};
        std::vector<QRectF> lines{};
    };
    using Inks = std::vector<Ink>;
    struct RowInks {
        Inks text;
        Inks pale; ///< what stands for no character of its own
    };

    struct Segment {
        qint64 from;
        qint64 to;
        int column;
        TextStyle style;
        QColor colour;
    };

    static Ink &InkFor(Inks &inks, size_t face, const QColor &colour);
    void PaintSelection(QPainter &painter, const RichTextLayout &layout, const Part &part) const;
    void CollectRow(RowInks &inks, const RichTextLayout &layout, qsizetype row,
                    const Part &part) const;
    int CollectSegment(RowInks &inks, const RichTextLayout &layout, const Segment &segment) const;
    void CollectBreak(RowInks &inks, const RichTextLayout &layout, qsizetype row,
                      const Part &part) const;
    bool ShowsBreak(const RichTextLayout &layout, qsizetype row) const;
    void DrawInk(QPainter &painter, Ink &ink) const;

    std::shared_ptr<const Faces> m_faces;
    bool m_pictures;
};
