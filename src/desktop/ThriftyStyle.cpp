// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ThriftyStyle.h"

#include <QHeaderView>
#include <QIconEngine>
#include <QPainter>
#include <QPointer>
#include <QStyleOption>

#include <algorithm>
#include <cmath>

namespace
{

// The toolkit shares a fill of 96 spans and more out among threads of a pool, though the pieces are
// far too small to be worth a thread, and waits for them. A fill has a span for each of its rows,
// and more where it is no plain colour.

/// Rows of a piece of a scroll bar, in pixels of the screen; an outline of it has two spans a row.
constexpr int RowsOfAPiece = 44;
constexpr int RowsOfAnEdge = 8; ///< as many may differ where a part of it begins or ends
/// Of a heading.
constexpr int WidthOfAHeading = 64;
constexpr int EdgeOfAHeading = 8; ///< as much at each end may differ from the rest

/// Draws what fills a tall rectangle in pieces, each on a picture of its own: a style may set other
/// clips than ours. A piece without anything that begins or ends near it, the rectangle included,
/// looks like the one above it if that has none either.
template <typename Draw>
void InPieces(const QRect &rect, const QList<int> &edges, QPainter &painter, const Draw &draw)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    const int rows = std::max(1, int(RowsOfAPiece / ratio));
    QPixmap piece;
    bool isPlain = false;
    for (int top = rect.top(); top <= rect.bottom(); top += rows) {
        const bool wasPlain = isPlain;
        isPlain = std::none_of(edges.cbegin(), edges.cend(), [&](int edge) {
            return edge > top - RowsOfAnEdge && edge < top + rows + RowsOfAnEdge;
        });
        if (!wasPlain || !isPlain) {
            const QSize size(rect.width(), std::min(rows, rect.bottom() + 1 - top));
            piece = QPixmap(size * ratio);
            piece.setDevicePixelRatio(ratio);
            piece.fill(Qt::transparent);
            QPainter onPiece(&piece);
            onPiece.setPen(painter.pen());
            onPiece.translate(-rect.left(), -top);
            draw(onPiece);
        }
        painter.drawPixmap(rect.left(), top, piece);
    }
}

/// Whether a picture of a size in logical pixels is one of whole pixels where it is painted.
bool HasWholePixels(const QPainter &painter)
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    return ratio == std::floor(ratio) && painter.transform().type() <= QTransform::TxTranslate;
}

/// Draws a wide heading of narrow ones that lie over each other: it is the same from left to right
/// but for its edges. The style keeps a picture of each size that it drew.
template <typename Option, typename Draw>
void AsNarrowHeadings(Option option, QPainter &painter, const Draw &draw)
{
    constexpr int Step = WidthOfAHeading - 2 * EdgeOfAHeading;
    const QRect whole = option.rect;
    for (int from = 0, size = 0; from < whole.width(); from += size) {
        const bool isLast = whole.width() - from <= WidthOfAHeading - EdgeOfAHeading;
        size = isLast ? whole.width() - from : Step;
        const int start = isLast      ? whole.width() - WidthOfAHeading
                          : from == 0 ? 0
                                      : from - EdgeOfAHeading;
        option.rect = QRect(whole.left() + start, whole.top(), WidthOfAHeading, whole.height());
        painter.save();
        painter.setClipRect(QRect(whole.left() + from, whole.top(), size, whole.height()),
                            Qt::IntersectClip);
        draw(option);
        painter.restore();
    }
}

/// Passes a heading on as what it is, so that it can be copied; false if it is none.
template <typename Use> bool WithHeading(const QStyleOption *option, const Use &use)
{
    if (const auto *later = qstyleoption_cast<const QStyleOptionHeaderV2 *>(option))
        use(*later);
    else if (const auto *heading = qstyleoption_cast<const QStyleOptionHeader *>(option))
        use(*heading);
    else
        return false;
    return true;
}

/// Whether a heading is never marked, and has the font of all.
bool IsPlain(const QHeaderView &header, int section)
{
    const QVariant font = header.model()->headerData(section, header.orientation(), Qt::FontRole);
    return !header.highlightSections() && !font.isValid();
}

class LateIcon final : public QIconEngine
{
  public:
    LateIcon(const QStyle *style, QStyle::StandardPixmap which) : m_style(style), m_which(which) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        Made().paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return Made().pixmap(size, 1.0, mode, state);
    }
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return Made().actualSize(size, mode, state);
    }
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override
    {
        return Made().availableSizes(mode, state);
    }
    QIconEngine *clone() const override { return new LateIcon(*this); }

  private:
    const QIcon &Made()
    {
        if (m_icon.isNull() && m_style)
            m_icon = m_style->standardIcon(m_which);
        return m_icon;
    }

    QPointer<const QStyle> m_style;
    QStyle::StandardPixmap m_which;
    QIcon m_icon;
};

} // namespace

QIcon ThriftyStyle::standardIcon(StandardPixmap which, const QStyleOption *option,
                                 const QWidget *widget) const
{
    if (which == SP_ToolBarHorizontalExtensionButton || which == SP_ToolBarVerticalExtensionButton)
        return QIcon(new LateIcon(baseStyle(), which));
    return QProxyStyle::standardIcon(which, option, widget);
}

bool ThriftyStyle::IsFusion() const
{
    return baseStyle()->name().compare(QLatin1String("fusion"), Qt::CaseInsensitive) == 0;
}

/// Where the parts of a scroll bar begin and end, from top to bottom.
QList<int> ThriftyStyle::EdgesOfParts(const QStyleOptionComplex &bar, const QWidget *widget) const
{
    QList<int> edges{bar.rect.top(), bar.rect.bottom() + 1};
    for (const SubControl part : {SC_ScrollBarSubLine, SC_ScrollBarSlider, SC_ScrollBarAddLine}) {
        const QRect rect = subControlRect(CC_ScrollBar, &bar, part, widget);
        edges << rect.top() << rect.bottom() + 1;
    }
    return edges;
}

void ThriftyStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                      QPainter *painter, const QWidget *widget) const
{
    const auto draw = [&](QPainter &on) {
        QProxyStyle::drawComplexControl(control, option, &on, widget);
    };
    const bool isTall = control == CC_ScrollBar && option->rect.height() > option->rect.width();
    if (isTall && HasWholePixels(*painter) && IsFusion())
        InPieces(option->rect, EdgesOfParts(*option, widget), *painter, draw);
    else
        draw(*painter);
}

void ThriftyStyle::drawControl(ControlElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    const auto draw = [&](const QStyleOption &given) {
        QProxyStyle::drawControl(element, &given, painter, widget);
    };
    const bool isWide = element == CE_HeaderSection && option->rect.width() > WidthOfAHeading &&
                        option->rect.height() < WidthOfAHeading && IsFusion();
    const bool isDrawn = isWide && WithHeading(option, [&](const auto &heading) {
                             AsNarrowHeadings(heading, *painter, draw);
                         });
    if (!isDrawn)
        draw(*option);
}

/// The toolkit measures all headings as if they were marked, in bold.
QSize ThriftyStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                     const QSize &contents, const QWidget *widget) const
{
    QSize size = contents;
    const auto *header =
        type == CT_HeaderSection ? qobject_cast<const QHeaderView *>(widget) : nullptr;
    const bool isHeading = header && WithHeading(option, [&](auto heading) {
                               if (IsPlain(*header, heading.section))
                                   heading.fontMetrics = header->fontMetrics();
                               size = QProxyStyle::sizeFromContents(type, &heading, size, widget);
                           });
    return isHeading ? size : QProxyStyle::sizeFromContents(type, option, contents, widget);
}
