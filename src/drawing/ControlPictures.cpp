// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ControlPictures.h"

#include "ByteLook.h"

#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace
{

/// A hexadecimal digit a row, its highest bit the left dot.
struct Letter {
    char name;
    const char *large;
    const char *small;
};

constexpr Letter Letters[] = {
    {'1', "4C4444E", "26227"}, {'2', "691248F", "61247"}, {'3', "E11611E", "61216"},
    {'4', "26AAF22", "55711"}, {'A', "699F999", "25755"}, {'B', "E99E99E", "65656"},
    {'C', "6988896", "34443"}, {'D', "E99999E", "65556"}, {'E', "F88E88F", "74647"},
    {'F', "F88E888", "74644"}, {'G', "698B997", "34553"}, {'H', "999F999", "55755"},
    {'I', "E44444E", "72227"}, {'K', "99ACA99", "55655"}, {'L', "888888F", "44447"},
    {'M', "9FF9999", "57755"}, {'N', "9DDBB99", "65555"}, {'O', "6999996", "25552"},
    {'Q', "69999A5", "25563"}, {'R', "E99EA99", "65655"}, {'S', "788611E", "34216"},
    {'T', "E444444", "72222"}, {'U', "9999996", "55557"}, {'V', "9999AA4", "55552"},
    {'X', "9966699", "55255"}, {'Y', "AAA4444", "55222"},
};

/// The letters of a size, in dots.
struct Script {
    const char *Letter::*rows;
    int width;
    int height;
    QPoint step; ///< from one letter to the next
};

constexpr Script Large = {&Letter::large, 4, 7, {5, 0}};
constexpr Script Small = {&Letter::small, 3, 5, {3, 6}};

constexpr int Dots(char digit)
{
    return digit <= '9' ? digit - '0' : digit - 'A' + 10;
}

/// The dots of a column that touch each other are one stroke.
void AddLetter(std::vector<QRect> &strokes, QPoint at, char name, const Script &script)
{
    const auto *letter = std::find_if(std::begin(Letters), std::end(Letters),
                                      [name](const Letter &entry) { return entry.name == name; });
    if (letter == std::end(Letters))
        return;
    for (int column = 0; column < script.width; ++column) {
        int top = 0;
        for (int row = 0; row <= script.height; ++row) {
            if (row < script.height &&
                (Dots((letter->*script.rows)[row]) >> (script.width - 1 - column)) & 1)
                continue;
            if (row > top)
                strokes.emplace_back(at.x() + column, at.y() + top, 1, row - top);
            top = row + 1;
        }
    }
}

/// Centred in the cell, but not to the left of it.
void AddLetters(std::vector<QRect> &strokes, const QRectF &cell, QByteArrayView letters,
                const Script &script)
{
    const auto steps = int(letters.size() - 1);
    const QSize size(script.width + steps * script.step.x(),
                     script.height + steps * script.step.y());
    QPoint at(qMax(qRound(cell.left() + (cell.width() - size.width()) / 2), qCeil(cell.left())),
              qRound(cell.top()) + qFloor((cell.height() - size.height()) / 2));
    for (const char letter : letters) {
        AddLetter(strokes, at, letter, script);
        at += script.step;
    }
}

void Fill(QPainter &painter, std::vector<QRect> &rects, const QColor &colour)
{
    painter.setBrush(colour);
    painter.drawRects(rects.data(), int(rects.size()));
    rects.clear();
}

} // namespace

namespace ControlPictures
{

qreal DotFor(qreal advance, qreal devicePixelRatio)
{
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1;
    return qMax(std::floor(advance * ratio / (Large.step.x() + 2)), 1.0) / ratio;
}

void Strokes::Add(const QRectF &place, uchar byte, qreal dot)
{
    const QRectF cell(place.topLeft() / dot, place.size() / dot);
    const int least = Small.width + Small.step.x();
    const int top = qRound(cell.top() + 1 / dot);
    const int bottom = qRound(cell.bottom() - 1 / dot);
    const int left = qRound(cell.left());
    if (cell.width() < least) { // too short for any character
        const int height = qMax((bottom - top) / 3, 1);
        m_letters.emplace_back(left, bottom - height, qMax(int(cell.width() / 2), 1), height);
        return;
    }
    const qreal aside = qMin((cell.width() - least) / 2, 1 / dot);
    m_grounds.emplace_back(QPoint(qRound(cell.left() + aside), top),
                           QPoint(qRound(cell.right() - aside) - 1, bottom - 1));
    const QByteArrayView name = ByteLook::NameOf(byte);
    if (qreal(name.size()) * Large.step.x() <= cell.width())
        AddLetters(m_letters, cell, name, Large);
    else
        AddLetters(m_letters, cell, ByteLook::BriefNameOf(byte), Small);
}

void Strokes::Draw(QPainter &painter, qreal dot)
{
    if (m_letters.empty())
        return;
    const QColor colour = painter.pen().color();
    QColor ground = colour;
    ground.setAlphaF(0.13F * colour.alphaF());
    painter.save();
    painter.scale(dot, dot);
    painter.setPen(Qt::NoPen);
    Fill(painter, m_grounds, ground);
    Fill(painter, m_letters, colour);
    painter.restore();
}

} // namespace ControlPictures
