// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "CaptureSection.h"

#include "BlockWriting.h"
#include "CaptureReader.h"
#include "FileSystem.h"

#include <QtEndian>

#include <utility>

namespace
{

using namespace CaptureFormat;

constexpr qsizetype OrderPlace = 8;
constexpr qsizetype OptionsPlace = 24;
constexpr qsizetype LengthSize = 4; ///< of the length behind the body

template <typename Number> Number NumberAt(QByteArrayView bytes, qsizetype place, bool bigEndian)
{
    return bigEndian ? qFromBigEndian<Number>(bytes.data() + place)
                     : qFromLittleEndian<Number>(bytes.data() + place);
}

} // namespace

CaptureSection::CaptureSection(QByteArray block, bool bigEndian)
    : m_block(std::move(block)), m_bigEndian(bigEndian)
{
}

std::optional<CaptureSection> CaptureSection::Of(const InputDevice &capture)
{
    QByteArray block(BlockFrame, '\0');
    if (capture.ReadAt(0, block.data(), block.size()).count < block.size() ||
        NumberAt<quint32>(block, 0, false) != SectionHeader)
        return std::nullopt;
    const bool bigEndian = NumberAt<quint32>(block, OrderPlace, true) == ByteOrderMagic;
    const qint64 length = NumberAt<quint32>(block, qsizetype(sizeof(quint32)), bigEndian);
    if (length < OptionsPlace + LengthSize || length > CaptureReader::LongestBlock ||
        length % Alignment != 0)
        return std::nullopt;
    block.resize(qsizetype(length));
    if (capture.ReadAt(0, block.data(), length).count < length ||
        NumberAt<quint32>(block, qsizetype(length) - LengthSize, bigEndian) != length)
        return std::nullopt;
    return CaptureSection(block, bigEndian);
}

CaptureSection CaptureSection::New()
{
    QByteArray head, block;
    BlockWriting::AppendSectionHead(head);
    BlockWriting::AppendBlock(block, SectionHeader, head);
    return {block, false};
}

QString CaptureSection::Option::Text() const
{
    return QString::fromUtf8(whole.sliced(OptionHead, length));
}

QList<CaptureSection::Option> CaptureSection::Options() const
{
    QList<Option> options;
    QByteArrayView rest = QByteArrayView(m_block).chopped(LengthSize).sliced(OptionsPlace);
    while (rest.size() >= OptionHead) {
        Option option;
        option.code = NumberAt<quint16>(rest, 0, m_bigEndian);
        option.length = NumberAt<quint16>(rest, qsizetype(sizeof(quint16)), m_bigEndian);
        const qsizetype size = OptionHead + BlockWriting::Padded(option.length);
        if (option.code == EndOfOptions || size > rest.size())
            break;
        option.whole = rest.first(size);
        options << option;
        rest = rest.sliced(size);
    }
    return options;
}

QStringList CaptureSection::Comments() const
{
    QStringList comments;
    for (const Option &option : Options()) {
        if (option.code == Comment)
            comments << option.Text();
    }
    return comments;
}

QByteArray CaptureSection::With(const QStringList &comments,
                                const std::function<bool(const QString &comment)> &isGivenUp) const
{
    QByteArray options;
    for (const QString &comment : comments)
        BlockWriting::AppendOption(options, Comment, comment.toUtf8(), m_bigEndian);
    QByteArrayView rest = QByteArrayView(m_block).chopped(LengthSize).sliced(OptionsPlace);
    if (rest.isEmpty() && !options.isEmpty())
        BlockWriting::EndOptions(options);
    for (const Option &option : Options()) {
        if (option.code != Comment || !isGivenUp(option.Text()))
            options += option.whole;
        rest = rest.sliced(option.whole.size());
    }
    const QByteArrayView head = QByteArrayView(m_block).first(OptionsPlace).sliced(OrderPlace);
    QByteArray block;
    BlockWriting::AppendBlock(block, SectionHeader,
                              head.toByteArray() + options + rest.toByteArray(), m_bigEndian);
    return block;
}
