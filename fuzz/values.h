#ifndef VALUES_H
#define VALUES_H

#include "support/random.h"

#include <QByteArray>
#include <QByteArrayList>

/// A number: usual, extreme, or text that is not a number.
QByteArray someNumber(Random &random);

/// An integer: small, or near the limits of int.
QByteArray someInteger(Random &random);

/// A colour in any format, or text that is not a colour.
QByteArray someColor(Random &random);

/// A text with all kinds of characters, neither quoted nor escaped.
QByteArray someText(Random &random);

/// Truncates @a bytes, or removes, inserts or changes a byte.
void damageBytes(QByteArray &bytes, Random &random);

/// Removes, inserts, repeats, swaps or replaces a piece. @a somePiece returns a new piece.
template <typename Function>
void damagePieces(QByteArrayList &pieces, Random &random, Function somePiece)
{
    const auto any = [&] { return static_cast<qsizetype>(random.below(static_cast<size_t>(pieces.size()))); };
    if (pieces.isEmpty())
        pieces.append(somePiece());
    const qsizetype at = any();
    switch (random.below(6)) {
    case 0:
        pieces.removeAt(at);
        break;
    case 1:
        pieces.insert(any(), somePiece());
        break;
    case 2:
        pieces.insert(any(), QByteArray(pieces.at(at)));
        break;
    case 3:
        pieces.swapItemsAt(at, any());
        break;
    default:
        pieces[at] = somePiece();
        break;
    }
}

#endif
