// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrintPaper.h"
#include "PrinterDevice.h"

#include <QFont>
#include <QFontMetricsF>

#include <memory>
#include <unordered_map>

/// A printer device that draws on paper, in a proportional font of 10 points. Words that follow one
/// another on a line are drawn at once: one by one they take most of the time and of a PDF file.
class QtPrinterDevice final : public PrinterDevice
{
  public:
    /// The files live longer than the device.
    QtPrinterDevice(const PrinterChoice &choice, OpenFiles &files);

    float ScaleWidth() const override { return float(m_pages->size.width()); }
    float ScaleHeight() const override { return float(m_pages->size.height()); }
    float TextWidth(const QString &text) const override;
    float TextHeight(const QString &text) const override;

  protected:
    void LayOutPages() override;
    Result BeginPage() override;
    Result DrawText(TwipPoint at, const QString &text, float width) override;
    Result DrawLine(TwipPoint from, TwipPoint to) override;
    Result DrawPicture(const PrinterPicture &picture, const TwipRect &place) override;
    Result FinishJob() override;
    void DiscardJob() override;

  private:
    /// Words are short: the toolkit's own hash takes longer than all the rest of the layout.
    struct WordHash {
        size_t operator()(const QString &word) const noexcept;
    };
    /// The font in one weight, as it is on the paper.
    struct Face {
        Face(bool bold, QPaintDevice &paper);

        QFont font;
        QFontMetricsF metrics;
        std::unordered_map<QString, float, WordHash> widths; ///< in twips, measured lately
    };
    /// The paper, and what is read off it for every word.
    struct Pages {
        Pages(const PrinterChoice &choice, OpenFiles &files);

        PrintPaper paper;
        QSizeF size;
        qreal dotsPerTwip;
        Face regular;
        Face bold;
    };

    /// Words that wait to be drawn.
    struct Run {
        TwipPoint at;
        float end = 0; ///< of the last word, in twips
        const Face *face = nullptr;
        QString text;
    };

    Face &CurrentFace() const { return FontBold() ? m_pages->bold : m_pages->regular; }
    QPointF Dots(TwipPoint point) const;
    void DrawRun();

    PrinterChoice m_choice;
    OpenFiles &m_files;
    std::unique_ptr<Pages> m_pages; ///< of the job at hand or the next one; never null
    Run m_run;
};
