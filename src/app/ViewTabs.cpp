// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ViewTabs.h"

#include <QAction>
#include <QApplication>

namespace
{

QString KeyOf(Representation view)
{
    return QStringLiteral("Ctrl+%1").arg(int(view) + 1);
}

QString CaptionOf(Representation view)
{
    return QString::fromLatin1(RowOf(view).caption);
}

} // namespace

ViewTabs::ViewTabs(QWidget *parent) : QTabBar(parent)
{
    setShape(RoundedSouth);
    setDrawBase(false);
    setExpanding(false);
    connect(this, &QTabBar::currentChanged, this, &ViewTabs::Tell);
    // A click on the tab that is shown already changes none.
    connect(this, &QTabBar::tabBarClicked, this, [this](int tab) {
        if (tab == currentIndex() && QApplication::mouseButtons() == Qt::LeftButton)
            Tell(tab);
    });
}

void ViewTabs::AddTabs()
{
    for (const Representation view : AllRepresentations) {
        const int tab = addTab(u' ' + CaptionOf(view));
        setTabToolTip(tab, KeyOf(view));
        setAccessibleTabName(tab, CaptionOf(view));
    }
}

void ViewTabs::AddKeys(QWidget &window)
{
    const auto add = [&](const QString &caption, const QString &keys, const auto &tab) {
        auto *action = new QAction(caption, &window);
        action->setShortcut(QKeySequence(keys));
        connect(action, &QAction::triggered, this, [this, tab] { Choose(tab()); });
        window.addAction(action);
    };
    for (const Representation view : AllRepresentations)
        add(CaptionOf(view), KeyOf(view), [view] { return int(view); });
    add(QStringLiteral("Next View"), QStringLiteral("Ctrl+PgDown"),
        [this] { return (currentIndex() + 1) % count(); });
    add(QStringLiteral("Previous View"), QStringLiteral("Ctrl+PgUp"),
        [this] { return (currentIndex() + count() - 1) % count(); });
}

void ViewTabs::Choose(int tab)
{
    if (tab == currentIndex())
        Tell(tab);
    else
        setCurrentIndex(tab);
}

void ViewTabs::Tell(int tab)
{
    if (IsRepresentation(tab))
        Q_EMIT Chosen(Representation(tab));
}
