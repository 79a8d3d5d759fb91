// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "Result.h"
#include "Step.h"

#include <QByteArrayView>
#include <QJsonValue>

class StepMaker;

/// A step as another program asks for it: a JSON object in one line, such as
/// {"step": "expect", "what": "Pong", "on": 1, "within": "500ms", "id": 7}.
struct StepCommand {
    Step step;
    QJsonValue id{QJsonValue::Undefined}; ///< whatever the other program put there; comes back
    Result result{};
};

/// The step's line is left to the caller. There is no repeat and no end.
StepCommand ReadStepCommand(QByteArrayView line, const StepMaker &maker);
