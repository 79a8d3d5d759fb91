// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "OptionsValues.h"

#include <QWidget>

#include <functional>
#include <optional>

/// What is wrong on a page: the field, the words for it, and what puts it right once the user has
/// been told.
struct OptionsFault {
    QWidget *field;
    QString text;
    std::function<void()> mend = [] {};
};

/// One page of the options dialog. It shows values and gives back what has become of them; what
/// the user did not touch it gives back as it was, even if it has no way to show it.
class OptionsPage : public QWidget
{
  public:
    using QWidget::QWidget;

    virtual void Show(const OptionsValues &values) = 0;
    virtual void Store(OptionsValues &values) const = 0;

    /// A field that may not be left as it stands. The one that is being typed in is not judged.
    virtual std::optional<OptionsFault> FaultyField(const QWidget *) { return {}; }
    /// What keeps the page from being confirmed, all fields being right.
    virtual std::optional<OptionsFault> Conflict() { return {}; }
};
