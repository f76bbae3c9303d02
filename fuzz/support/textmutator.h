#ifndef TEXTMUTATOR_H
#define TEXTMUTATOR_H

#include "random.h"

#include <QByteArray>

/// A record in the comma-separated form of earlier versions: each field mostly with a value of its kind,
/// ordinary or extreme, and a font as one version of Qt or another writes it.
QByteArray someOlderForm(Random &random);

/// The record with fields lost, added, changed, emptied or exchanged, or with another font.
QByteArray damagedOlderForm(const QByteArray &text, Random &random);

/// The first fields of one record and the later ones of the other.
QByteArray crossedOlderForms(const QByteArray &first, const QByteArray &second, Random &random);

#endif
