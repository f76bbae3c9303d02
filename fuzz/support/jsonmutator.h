#ifndef JSONMUTATOR_H
#define JSONMUTATOR_H

#include "random.h"

#include <QByteArray>

/// A gauge document with one to a few layers: every key that a document can have, most with values of their
/// own kind, ordinary and extreme, some missing, some of another type.
QByteArray someGaugeDocument(Random &random);

/// The document, damaged in its structure: values changed for others of their kind or of any type, members
/// lost, doubled, reordered, renamed, wrapped, nested or put elsewhere. A text that is no JSON is replaced by
/// a new document.
QByteArray damagedGaugeDocument(const QByteArray &document, Random &random);

/// The first document with a part of the second in place of one of its own.
QByteArray crossedGaugeDocuments(const QByteArray &first, const QByteArray &second, Random &random);

#endif
