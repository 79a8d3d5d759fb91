// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QByteArrayList>

#include <random>

/// Made-up traffic and sequences, the same in every run.
namespace SampleTraffic
{

using Random = std::mt19937;

inline QByteArray RandomBytes(Random &random, qsizetype count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = char(random());
    return bytes;
}

/// Lines such as a measuring instrument sends.
inline QByteArray Text(Random &random, qsizetype count)
{
    QByteArray text;
    while (text.size() < count) {
        text += "CH" + QByteArray::number(random() % 16) + " T=";
        text += QByteArray::number(double(random() % 100000) / 100.0, 'f', 2) + " C, U=";
        text += QByteArray::number(double(random() % 24000) / 1000.0, 'f', 3) + " V OK\r\n";
    }
    return text.first(count);
}

/// Random sequences of 8 to 32 bytes.
inline QByteArrayList Sequences(Random &random, int count)
{
    QByteArrayList sequences;
    for (int i = 0; i < count; ++i)
        sequences << RandomBytes(random, 8 + qsizetype(random() % 25));
    return sequences;
}

/// The sequences themselves, each with its first byte spoilt: every one nearly matches.
inline QByteArray NearMisses(Random &random, const QByteArrayList &sequences, qsizetype count)
{
    QByteArray frames;
    while (frames.size() < count) {
        QByteArray frame = sequences[qsizetype(random() % size_t(sequences.size()))];
        frame[0] = char(frame[0] ^ 0x55);
        frames += frame;
    }
    return frames.first(count);
}

} // namespace SampleTraffic
