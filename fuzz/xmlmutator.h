#ifndef XMLMUTATOR_H
#define XMLMUTATOR_H

#include "support/random.h"

#include <QByteArray>

/// A version number: dotted numbers, too large numbers or words.
QByteArray someVersion(Random &random);

/// A version description with elements in any order and depth, texts in all forms of XML, and sometimes a
/// document type or another encoding. Mostly well-formed.
QByteArray someVersionDescription(Random &random);

/// A description with pieces (tags or texts) removed, added, repeated or swapped, or with deep nesting. It is
/// sometimes repeated until it is larger than @a size.
QByteArray damagedVersionDescription(const QByteArray &xml, qsizetype size, Random &random);

/// The first pieces of one description and the last pieces of the other.
QByteArray joinedVersionDescriptions(const QByteArray &first, const QByteArray &second, Random &random);

#endif
