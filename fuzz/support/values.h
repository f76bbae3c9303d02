#ifndef VALUES_H
#define VALUES_H

#include "random.h"

#include <QByteArray>

/// A number as text, from the ordinary to what no type can hold, and now and then what is nearly a number.
QByteArray someNumber(Random &random);

/// An integer as text, mostly small, now and then at or beyond the ends of int.
QByteArray someInteger(Random &random);

/// A colour as a file may name it: hexadecimal of every length, names, and what names none.
QByteArray someColor(Random &random);

/// A text for a name or a font family: empty, long, of every script, with every kind of odd character. It is
/// neither quoted nor escaped.
QByteArray someText(Random &random);

/// Changes @a bytes as a bad disk or a bad editor would: cut, a byte lost or changed, a mark put in front.
void damageBytes(QByteArray &bytes, Random &random);

#endif
