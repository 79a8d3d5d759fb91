// SPDX-FileCopyrightText: The Serimonde developers
// SPDX-License-Identifier: MIT

#include "ControlPictures.h"

#include "ByteLook.h"

#include <QPainter>

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

void DrawLetter(QPainter &painter, const QPointF &at, char name, const Script &script, qreal dot)
{
    const auto *letter = std::find_if(std::begin(Letters), std::end(Letters),
                                      [name](const Letter &entry) { return entry.name == name; });
    if (letter == std::end(Letters))
        return;
    for (int row = 0; row < script.height; ++row) {
        const char digit = (letter->*script.rows)[row];
        const int dots = digit <= '9' ? digit - '0' : digit - 'A' + 10;
        for (int column = 0; column < script.width; ++column) {
            if ((dots >> (script.width - 1 - column)) & 1)
                painter.fillRect(QRectF(at.x() + column * dot, at.y() + row * dot, dot, dot),
                                 painter.pen().color());
        }
    }
}

void DrawLetters(QPainter &painter, const QRectF &cell, QByteArrayView letters,
                 const Script &script, qreal dot)
{
    const auto steps = qreal(letters.size() - 1);
    const qreal width = (script.width + steps * script.step.x()) * dot;
    const qreal height = (script.height + steps * script.step.y()) * dot;
    const qreal left = cell.left() + (cell.width() - width) / 2;
    QPointF at(std::round(left / dot) * dot,
               cell.top() + std::floor((cell.height() - height) / 2 / dot) * dot);
    for (const char letter : letters) {
        DrawLetter(painter, at, letter, script, dot);
        at += QPointF(script.step) * dot;
    }
}

} // namespace

namespace ControlPictures
{

qreal DotFor(qreal advance, qreal devicePixelRatio)
{
    const qreal ratio = devicePixelRatio > 0 ? devicePixelRatio : 1;
    return qMax(std::floor(advance * ratio / (Large.step.x() + 2)), 1.0) / ratio;
}

void Draw(QPainter &painter, const QRectF &cell, uchar byte, qreal dot)
{
    QColor ground = painter.pen().color();
    ground.setAlphaF(0.13F);
    painter.fillRect(cell.adjusted(1, 1, -1, -1), ground);
    const QByteArrayView name = ByteLook::NameOf(byte);
    if (qreal(name.size()) * Large.step.x() * dot <= cell.width())
        DrawLetters(painter, cell, name, Large, dot);
    else
        DrawLetters(painter, cell, ByteLook::BriefNameOf(byte), Small, dot);
}

} // namespace ControlPictures
