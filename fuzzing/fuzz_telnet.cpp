// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ComPortClient.h"

#include <cstdint>
#include <cstdlib>

namespace
{

/// What a client has heard, and what it has to say.
struct Conversation {
    QByteArray heard;
    QByteArray said;

    bool operator==(const Conversation &) const = default;
};

Conversation Feed(ComPortClient &client, QByteArrayView words, qsizetype part)
{
    Conversation conversation;
    for (; !words.isEmpty(); words = words.sliced(qMin(part, words.size()))) {
        client.Feed(words.first(qMin(part, words.size())));
        while (const auto piece = client.Next()) {
            conversation.heard += piece->bytes;
            if (piece->news != ComPortClient::Piece::News::None)
                conversation.heard += char(piece->lineState);
        }
        conversation.said += client.TakeOutgoing();
    }
    return conversation;
}

} // namespace

/// Any bytes are a server's words. However they are cut, the same is heard and said, and no more is
/// said than a client ever has to.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    constexpr qsizetype MostSaid = 2 * 256 * TelnetOptions::MostAnswers * 3 + 1024;
    const QByteArrayView words(data, qsizetype(size));
    const ComPortRequest request = {.settings = {}, .listens = size % 2 == 0};
    ComPortClient whole(request);
    ComPortClient cut(request);
    const Conversation first = Feed(whole, words, words.size());
    if (first != Feed(cut, words, 1) || first.said.size() > MostSaid ||
        whole.Verdict() != cut.Verdict() || whole.Settings() != cut.Settings() ||
        whole.Modem() != cut.Modem() || first.heard.size() > words.size())
        std::abort();
    return 0;
}
