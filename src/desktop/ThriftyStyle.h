// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QList>
#include <QProxyStyle>

/// The desktop's style, or the one that the user asked for. The buttons with which menu bars and
/// toolbars show what has no room get their icons when these are first painted: to make them, the
/// toolkit loads all of its picture plug-ins, which the first window would wait for. The toolkit's
/// own style, Fusion, paints tall scroll bars and headings in pieces that are too small for the
/// toolkit to start threads for them. Headings that are never painted bold are not measured so, for
/// which a face would be loaded. To be made when the toolkit has started and knows the desktop.
class ThriftyStyle final : public QProxyStyle
{
  public:
    QIcon standardIcon(StandardPixmap which, const QStyleOption *option,
                       const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;

  private:
    QList<int> EdgesOfParts(const QStyleOptionComplex &bar, const QWidget *widget) const;
    bool IsFusion() const;
};
