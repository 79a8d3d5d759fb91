// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ThriftyStyle.h"

#include <QIconEngine>
#include <QPointer>

namespace
{

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
