// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "platform/QtPrinterDevice.h"

#include <QFontMetricsF>
#include <QImage>

QtPrinterDevice::QtPrinterDevice(const PrinterChoice &choice, OpenFiles &files)
    : m_choice(choice), m_files(files)
{
    m_paper.emplace(m_choice, m_files);
}

QFont QtPrinterDevice::Font() const
{
    constexpr int PointSize = 10;
    QFont font(QStringLiteral("Arial"), PointSize);
    font.setStyleHint(QFont::SansSerif);
    font.setBold(FontBold());
    return {font, &m_paper->Device()};
}

QPointF QtPrinterDevice::Dots(TwipPoint point) const
{
    return QPointF(point.x - ScaleLeft(), point.y - ScaleTop()) * m_paper->DotsPerTwip();
}

float QtPrinterDevice::TextWidth(const QString &text) const
{
    return float(QFontMetricsF(Font()).horizontalAdvance(text) / m_paper->DotsPerTwip());
}

float QtPrinterDevice::TextHeight(const QString &) const
{
    return float(QFontMetricsF(Font()).lineSpacing() / m_paper->DotsPerTwip());
}

QString QtPrinterDevice::LayOutPages()
{
    m_choice.orientation = Orientation();
    m_choice.colour = Colour();
    m_paper.emplace(m_choice, m_files);
    return {};
}

QString QtPrinterDevice::BeginPage()
{
    return m_paper->NextPage();
}

QString QtPrinterDevice::DrawText(TwipPoint at, const QString &text)
{
    QPainter &painter = m_paper->Painter();
    painter.setFont(Font());
    painter.setPen(Qt::black);
    painter.drawText(Dots(at) + QPointF(0, QFontMetricsF(Font()).ascent()), text);
    return {};
}

QString QtPrinterDevice::DrawLine(TwipPoint from, TwipPoint to)
{
    constexpr qreal Thickness = 10; // half a point
    m_paper->Painter().setPen(QPen(Qt::black, Thickness * m_paper->DotsPerTwip()));
    m_paper->Painter().drawLine(Dots(from), Dots(to));
    return {};
}

QString QtPrinterDevice::DrawPicture(const PrinterPicture &picture, const TwipRect &place)
{
    QImage image = QImage::fromData(picture.file);
    if (image.isNull())
        return QStringLiteral("The picture cannot be read");
    if (Colour() == PrintColour::Monochrome)
        image.convertTo(QImage::Format_Grayscale8);
    const QSizeF size = QSizeF(place.width, place.height) * m_paper->DotsPerTwip();
    m_paper->Painter().drawImage(QRectF(Dots(place.at), size), image);
    return {};
}
