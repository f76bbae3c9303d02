#ifndef XMLMUTATOR_H
#define XMLMUTATOR_H

#include "random.h"

#include <QByteArray>

/// A version as somebody might publish it: dotted numbers, short, long and enormous, with words or without.
QByteArray someVersion(Random &random);

/// A version description: the elements that one has and others, in any order and number, nested, with text in
/// every form that XML knows; before them perhaps a declaration, a mark and a document type with
/// declarations; now and then in another encoding. Mostly well-formed.
QByteArray someVersionDescription(Random &random);

/// The description, damaged in its structure: tags, texts and declarations lost, doubled, exchanged,
/// inserted, nested deeply or repeated many times, within @a mostBytes.
QByteArray damagedVersionDescription(const QByteArray &xml, size_t mostBytes, Random &random);

/// The beginning of the first description and the end of the second, cut between tags.
QByteArray crossedVersionDescriptions(const QByteArray &first, const QByteArray &second, Random &random);

#endif
