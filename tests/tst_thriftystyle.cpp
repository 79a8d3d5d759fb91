// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ThriftyStyle.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QPainter>
#include <QStyleFactory>
#include <QStyleOptionSlider>
#include <QTest>
#include <QTreeWidget>

#include <memory>
#include <type_traits>

namespace
{

/// What is painted of a heading or a scroll bar.
template <typename Option> QImage Painted(const QStyle &style, const Option &option)
{
    QImage image(option.rect.right() + 1, option.rect.bottom() + 1, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    if constexpr (std::is_base_of_v<QStyleOptionComplex, Option>)
        style.drawComplexControl(QStyle::CC_ScrollBar, &option, &painter, nullptr);
    else
        style.drawControl(QStyle::CE_HeaderSection, &option, &painter, nullptr);
    return image;
}

} // namespace

QStyleOptionHeaderV2 Heading(int width)
{
    QStyleOptionHeaderV2 option;
    option.palette = QApplication::palette();
    option.state = QStyle::State_Enabled;
    option.rect = QRect(3, 5, width, 22);
    return option;
}

QStyleOptionSlider ScrollBar(int length)
{
    QStyleOptionSlider option;
    option.palette = QApplication::palette();
    option.orientation = Qt::Vertical;
    option.subControls = QStyle::SC_All;
    option.maximum = 500;
    option.pageStep = 100;
    option.sliderPosition = option.sliderValue = length;
    option.state = QStyle::State_Enabled | QStyle::State_MouseOver;
    option.state.setFlag(QStyle::State_Sunken, length % 2 == 0);
    option.rect = QRect(0, 0, 14, length);
    return option;
}

/// The threads of this program.
QByteArrayList ThreadNames()
{
    QByteArrayList names;
    for (const QString &thread : QDir(QStringLiteral("/proc/self/task")).entryList()) {
        QFile name(QStringLiteral("/proc/self/task/%1/comm").arg(thread));
        if (name.open(QIODevice::ReadOnly))
            names << name.readAll().trimmed();
    }
    return names;
}

class tst_thriftystyle : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void initTestCase() { QCOMPARE(QApplication::style()->name(), "fusion"); }

    void StartsNoThreads()
    {
        Painted(m_thrifty, ScrollBar(800));
        Painted(m_thrifty, Heading(600));
        QVERIFY(ThreadNames().size() > 0 && !ThreadNames().contains("Thread (pooled)"));
        Painted(*m_plain, ScrollBar(800));
        QVERIFY2(ThreadNames().contains("Thread (pooled)"),
                 "the toolkit has become thrifty itself");
    }

    void Headings()
    {
        const QStyle::State enabled = QStyle::State_Enabled;
        for (const QStyle::State state : {enabled, enabled | QStyle::State_Sunken,
                                          enabled | QStyle::State_MouseOver, QStyle::State()}) {
            for (int width = 1; width < 300; ++width) {
                QStyleOptionHeaderV2 option = Heading(width);
                option.state = state;
                QCOMPARE(Painted(m_thrifty, option), Painted(*m_plain, option));
            }
        }
    }

    /// In bold only where they may be painted so.
    void MeasuresHeadings()
    {
        const QString text = QStringLiteral("A heading of many letters, WWWWWWWWWWWWWWWWWWWW");
        for (const bool marks : {false, true}) {
            QTreeWidget list;
            list.header()->setStyle(&m_thrifty);
            list.setHeaderLabels({text});
            list.header()->setHighlightSections(marks);
            QFont font = list.header()->font();
            const int plain = QFontMetrics(font).horizontalAdvance(text);
            font.setBold(true);
            const int bold = QFontMetrics(font).horizontalAdvance(text);
            QVERIFY(plain < bold);
            const int width = list.header()->sectionSizeHint(0);
            const int margin = width - (marks ? bold : plain);
            QVERIFY2(margin >= 0 && margin < bold - plain, qPrintable(QString::number(margin)));
        }
    }

    void ScrollBars()
    {
        for (const QStyle::SubControl active :
             {QStyle::SC_None, QStyle::SC_ScrollBarSlider, QStyle::SC_ScrollBarAddLine}) {
            for (int length = 30; length < 700; length += 61) {
                QStyleOptionSlider option = ScrollBar(length);
                option.activeSubControls = active;
                QCOMPARE(Painted(m_thrifty, option), Painted(*m_plain, option));
            }
        }
    }

  private:
    ThriftyStyle m_thrifty;
    const std::unique_ptr<QStyle> m_plain{QStyleFactory::create(QStringLiteral("fusion"))};
};

QTEST_MAIN(tst_thriftystyle)
#include "tst_thriftystyle.moc"
