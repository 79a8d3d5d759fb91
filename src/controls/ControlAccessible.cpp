// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ControlAccessible.h"

#include "ClickLabel.h"
#include "DialogPage.h"
#include "Pressing.h"
#include "SplitterHandle.h"

#include <QAccessibleWidget>

namespace
{

/// A link, or a button if it is none; one that nobody listens to is just a text.
class LabelAccessible final : public QAccessibleWidget
{
  public:
    explicit LabelAccessible(ClickLabel &label) : QAccessibleWidget(&label), m_label(label) {}

    QAccessible::Role role() const override
    {
        if (!m_label.Acts())
            return QAccessible::StaticText;
        return m_label.focusPolicy() != Qt::NoFocus ? QAccessible::Link : QAccessible::Button;
    }
    QString text(QAccessible::Text kind) const override
    {
        const bool own = kind == QAccessible::Name && m_label.accessibleName().isEmpty();
        return own ? m_label.text() : QAccessibleWidget::text(kind);
    }
    QStringList actionNames() const override
    {
        const bool acts = m_label.Acts() && m_label.isEnabled();
        return (acts ? QStringList{pressAction()} : QStringList{}) +
               QAccessibleWidget::actionNames();
    }
    void doAction(const QString &name) override
    {
        if (name == pressAction())
            PressLater(m_label, [label = &m_label] { Q_EMIT label->Clicked(); });
        else
            QAccessibleWidget::doAction(name);
    }

  private:
    ClickLabel &m_label;
};

/// A page that is hidden, or has been moved out of its dialog's sight, is empty.
class PageAccessible final : public QAccessibleWidget
{
  public:
    explicit PageAccessible(DialogPage &page) : QAccessibleWidget(&page) {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible = state.offscreen = !IsSeen();
        return state;
    }
    int childCount() const override { return IsSeen() ? QAccessibleWidget::childCount() : 0; }
    QAccessibleInterface *child(int index) const override
    {
        return IsSeen() ? QAccessibleWidget::child(index) : nullptr;
    }

  private:
    bool IsSeen() const
    {
        return widget()->isVisible() &&
               widget()->parentWidget()->rect().intersects(widget()->geometry());
    }
};

} // namespace

QAccessibleInterface *ControlAccessible::Create(const QString &className, QObject *object)
{
    if (auto *label = qobject_cast<ClickLabel *>(object))
        return new LabelAccessible(*label);
    if (auto *page = dynamic_cast<DialogPage *>(object))
        return new PageAccessible(*page);
    if (auto *handle = qobject_cast<SplitterHandle *>(object))
        return new QAccessibleWidget(handle, QAccessible::Splitter);
    auto *widget = qobject_cast<QWidget *>(object);
    if (!widget)
        return nullptr;
    // Classes are asked for from the object's own one down; what the toolkit knows comes earlier.
    if (className == QLatin1String("QWidget") && widget->windowType() == Qt::Window)
        return new QAccessibleWidget(widget, QAccessible::Window);
    if (className == QLatin1String("QFrame") && !widget->isWindow()) // would pass for a window
        return new QAccessibleWidget(widget, QAccessible::Client);
    return nullptr;
}
