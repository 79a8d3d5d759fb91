// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "QtPrinterDevice.h"

#include <QImage>

namespace
{

QFont PaperFont(bool bold)
{
    constexpr int PointSize = 10;
    QFont font(QStringLiteral("Arial"), PointSize);
    font.setStyleHint(QFont::SansSerif);
    font.setBold(bold);
    // A line is as wide as its words together.
    font.setKerning(false);
    return font;
}

} // namespace

size_t QtPrinterDevice::WordHash::operator()(const QString &word) const noexcept
{
    size_t hash = 0;
    for (const QChar character : word)
        hash = hash * 31 + character.unicode();
    return hash;
}

QtPrinterDevice::Face::Face(bool bold, QPaintDevice &paper)
    : font(PaperFont(bold), &paper), metrics(font)
{
}

QtPrinterDevice::Pages::Pages(const PrinterChoice &choice, OpenFiles &files)
    : paper(choice, files),
      size(paper.Size()),
      dotsPerTwip(paper.DotsPerTwip()),
      regular(false, paper.Device()),
      bold(true, paper.Device())
{
}

QtPrinterDevice::QtPrinterDevice(const PrinterChoice &choice, OpenFiles &files)
    : m_choice(choice), m_files(files), m_pages(std::make_unique<Pages>(choice, files))
{
}

QPointF QtPrinterDevice::Dots(TwipPoint point) const
{
    return QPointF(point.x - ScaleLeft(), point.y - ScaleTop()) * m_pages->dotsPerTwip;
}

/// A printout says few words again and again.
float QtPrinterDevice::TextWidth(const QString &text) const
{
    constexpr size_t MostWidths = 4096;
    Face &face = CurrentFace();
    if (const auto known = face.widths.find(text); known != face.widths.end())
        return known->second;
    if (face.widths.size() >= MostWidths)
        face.widths.clear();
    const float width = float(face.metrics.horizontalAdvance(text) / m_pages->dotsPerTwip);
    face.widths.emplace(text, width);
    return width;
}

float QtPrinterDevice::TextHeight(const QString &) const
{
    return float(CurrentFace().metrics.lineSpacing() / m_pages->dotsPerTwip);
}

void QtPrinterDevice::LayOutPages()
{
    m_choice.orientation = Orientation();
    m_choice.colour = Colour();
    m_run = {};
    m_pages = std::make_unique<Pages>(m_choice, m_files);
}

Result QtPrinterDevice::BeginPage()
{
    DrawRun();
    return m_pages->paper.NextPage();
}

Result QtPrinterDevice::FinishJob()
{
    DrawRun();
    return m_pages->paper.Finish();
}

void QtPrinterDevice::DiscardJob()
{
    m_run = {};
    m_pages->paper.Discard();
}

Result QtPrinterDevice::DrawText(TwipPoint at, const QString &text, float width)
{
    const Face *face = &CurrentFace();
    if (face != m_run.face || at.x != m_run.end || at.y != m_run.at.y) {
        DrawRun();
        m_run.at = at;
        m_run.face = face;
    }
    m_run.text += text;
    m_run.end = at.x + width;
    return {};
}

void QtPrinterDevice::DrawRun()
{
    if (m_run.text.isEmpty())
        return;
    const QPointF at = Dots(m_run.at) + QPointF(0, m_run.face->metrics.ascent());
    m_pages->paper.Draw([at, face = m_run.face, text = m_run.text](QPainter &painter) {
        painter.setFont(face->font);
        painter.setPen(Qt::black);
        painter.drawText(at, text);
    });
    m_run = {};
}

Result QtPrinterDevice::DrawLine(TwipPoint from, TwipPoint to)
{
    DrawRun();
    constexpr qreal Thickness = 10; // half a point
    const QPen pen(Qt::black, Thickness * m_pages->dotsPerTwip);
    const QLineF line(Dots(from), Dots(to));
    m_pages->paper.Draw([pen, line](QPainter &painter) {
        painter.setPen(pen);
        painter.drawLine(line);
    });
    return {};
}

Result QtPrinterDevice::DrawPicture(const PrinterPicture &picture, const TwipRect &place)
{
    DrawRun();
    QImage image = QImage::fromData(picture.file);
    if (image.isNull())
        return Failure{QStringLiteral("The picture cannot be read")};
    if (Colour() == PrintColour::Monochrome)
        image.convertTo(QImage::Format_Grayscale8);
    const QRectF room(Dots(place.at), QSizeF(place.width, place.height) * m_pages->dotsPerTwip);
    m_pages->paper.Draw([room, image](QPainter &painter) { painter.drawImage(room, image); });
    return {};
}
