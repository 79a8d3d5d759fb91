// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "PrintOutput.h"
#include "RichTextModel.h"

#include <QStringList>

#include <functional>

/// The printout of a test: what was drawn where, and how the job ended. A letter is 100 twips wide
/// and a line 200 high, bold or not; bold text is marked with "*".
class RecordingOutput final : public PrintOutput
{
  public:
    float scaleWidth = 1440 + 2000 + 720;   ///< 2000 between the margins
    float scaleHeight = 1152 + 1000 + 1152; ///< 1000 between the margins
    float lineHeight = 200;
    int drawingsUntilFailure = -1; ///< negative: none fails
    bool failFinish = false;
    QStringList drawn; ///< "page: x,y text"
    QStringList ends;  ///< "finished" or "discarded", one for each job
    int pages = 0;     ///< that were begun
    QList<PrinterChoice> choices;
    QString setUp;               ///< orientation and colour, as numbers
    QByteArrayList viewsPrinted; ///< what was to be printed of views
    QStringList margins;         ///< what their margins were to say
    std::function<void()> beforeDrawing = [] {};

    std::unique_ptr<PrinterDevice> MakePrinter(const PrinterChoice &choice) override
    {
        choices << choice;
        return std::make_unique<Device>(*this);
    }
    Result PrintView(const ViewPrintout &printout, const PrinterChoice &choice,
                     WorkProgress &) override
    {
        choices << choice;
        beforeDrawing();
        if (printout.margin)
            margins << printout.margin->view + u' ' + printout.margin->date;
        viewsPrinted << printout.text->Bytes().toByteArray();
        return {};
    }

    /// What was drawn, the words of a line joined: "page/line text".
    QStringList Lines() const
    {
        QStringList lines;
        QString previous;
        for (const QString &entry : drawn) {
            const QString page = entry.section(u':', 0, 0);
            const float y = entry.section(u' ', 1, 1).section(u',', 1).toFloat();
            const QString place = QStringLiteral("%1/%2 ").arg(page).arg(y / lineHeight);
            const QString text = entry.section(u' ', 2);
            if (place == previous && !text.startsWith("line"))
                lines.last() += text.mid(text.startsWith(u'*') ? 1 : 0);
            else
                lines << place + text;
            previous = place;
        }
        return lines;
    }

  private:
    class Device final : public PrinterDevice
    {
      public:
        explicit Device(RecordingOutput &output) : m_output(output) {}

        float ScaleWidth() const override { return m_output.scaleWidth; }
        float ScaleHeight() const override { return m_output.scaleHeight; }
        float TextWidth(const QString &text) const override { return 100.0F * float(text.size()); }
        float TextHeight(const QString &) const override { return m_output.lineHeight; }

      protected:
        void LayOutPages() override
        {
            m_output.setUp = QStringLiteral("%1 %2").arg(int(Orientation())).arg(int(Colour()));
        }
        Result BeginPage() override
        {
            ++m_output.pages;
            return {};
        }
        Result DrawText(TwipPoint at, const QString &text, float) override
        {
            return Record(at, (FontBold() ? QStringLiteral("*") : QString()) + text);
        }
        Result DrawLine(TwipPoint from, TwipPoint to) override
        {
            return Record(from, QStringLiteral("line to %1,%2").arg(to.x).arg(to.y));
        }
        Result DrawPicture(const PrinterPicture &picture, const TwipRect &place) override
        {
            return Record(place.at, QStringLiteral("picture %1 %2x%3")
                                        .arg(QString::fromLatin1(picture.file))
                                        .arg(place.width)
                                        .arg(place.height));
        }
        Result FinishJob() override
        {
            m_output.ends << "finished";
            return m_output.failFinish ? Failure{QStringLiteral("full")} : Result();
        }
        void DiscardJob() override { m_output.ends << "discarded"; }

      private:
        Result Record(TwipPoint at, const QString &what)
        {
            m_output.beforeDrawing();
            m_output.drawn << QStringLiteral("%1: %2,%3 ").arg(m_output.pages).arg(at.x).arg(at.y) +
                                  what;
            return m_output.drawingsUntilFailure-- == 0 ? Failure{QStringLiteral("broken")}
                                                        : Result();
        }

        RecordingOutput &m_output;
    };
};
