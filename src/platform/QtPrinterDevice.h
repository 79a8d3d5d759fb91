// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/PrintPaper.h"
#include "platform/PrinterDevice.h"

#include <QFont>

#include <optional>

/// A printer device that draws on paper, in a proportional font of 10 points.
class QtPrinterDevice final : public PrinterDevice
{
  public:
    /// The files live longer than the device.
    QtPrinterDevice(const PrinterChoice &choice, OpenFiles &files);

    float ScaleWidth() const override { return float(m_paper->Size().width()); }
    float ScaleHeight() const override { return float(m_paper->Size().height()); }
    float TextWidth(const QString &text) const override;
    float TextHeight(const QString &text) const override;

  protected:
    QString LayOutPages() override;
    QString BeginPage() override;
    QString DrawText(TwipPoint at, const QString &text) override;
    QString DrawLine(TwipPoint from, TwipPoint to) override;
    QString DrawPicture(const PrinterPicture &picture, const TwipRect &place) override;
    QString FinishJob() override { return m_paper->Finish(); }
    void DiscardJob() override { m_paper->Discard(); }

  private:
    QFont Font() const;
    QPointF Dots(TwipPoint point) const;

    PrinterChoice m_choice;
    OpenFiles &m_files;
    std::optional<PrintPaper> m_paper; ///< of the job at hand or the next one; never empty
};
