#ifndef GAUGEMUTATOR_H
#define GAUGEMUTATOR_H

#include "support/random.h"

#include <QByteArray>

/// A gauge file with a few layers. Most fields have values of their type, some are missing or mistyped.
QByteArray someGaugeDocument(Random &random);

/// A gauge file with some values, groups or layers changed. If it cannot be parsed, a new one.
QByteArray damagedGaugeDocument(const QByteArray &document, Random &random);

/// Layers of both gauge files.
QByteArray joinedGaugeDocuments(const QByteArray &first, const QByteArray &second, Random &random);

/// A layer in the comma-separated format. Most fields have values of their type.
QByteArray someGaugeText(Random &random);

/// A text in the comma-separated format with some fields changed, added or removed.
QByteArray damagedGaugeText(const QByteArray &text, Random &random);

/// The first fields of one text and the last fields of the other.
QByteArray joinedGaugeTexts(const QByteArray &first, const QByteArray &second, Random &random);

#endif
