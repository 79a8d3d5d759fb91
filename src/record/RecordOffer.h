// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include "RecordLeftovers.h"
#include "RecordSaver.h"

#include <QObject>

class BackgroundWork;
enum class PromptAnswer;

/// Offers the records that sessions left behind, in one question for all of them. Nobody waits for
/// it: they are looked for in the background, and stay if the question is not answered.
class RecordOffer final : public QObject
{
    Q_OBJECT

  public:
    RecordOffer(const RecordParts &parts, RecordSaver &saver, std::shared_ptr<RecordFolder> folder,
                BackgroundWork &background);

    void Offer();

  private:
    using Records = QList<std::shared_ptr<LeftRecord>>;

    void Ask(const Records &left);
    void Answer(PromptAnswer answer, const Records &left);
    void Save(const Records &left);
    void Remove(const std::shared_ptr<LeftRecord> &record);

    RecordParts m_parts;
    RecordSaver &m_saver;
    const std::shared_ptr<RecordFolder> m_folder;
    BackgroundWork &m_background;
};
