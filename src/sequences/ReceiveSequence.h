// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "SendSequence.h"

/// Bytes that are watched for in the received data, and what their detection leads to.
struct ReceiveSequence {
    QByteArray Name{};
    QByteArray Sequence{}; ///< every byte stands for itself; an empty one is never detected
    EditorTextArray EditorTexts{};
    QByteArray AnswerName{}; ///< name of the answer, derived from Answer; empty for none
    qint16 Answer = 0;       ///< 0 none, k: the send sequence at index k - 1
    QByteArray Comment{};    ///< goes into the communication window; empty for none
    qint16 CommentToLog = 0; ///< 0 off, otherwise on
    qint16 Active = 1;       ///< takes part in detection only while it is exactly 1

    bool IsWatched() const { return Active == 1 && !Sequence.isEmpty(); }
};
