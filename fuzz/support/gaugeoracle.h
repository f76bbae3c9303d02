#ifndef GAUGEORACLE_H
#define GAUGEORACLE_H

#include "model/gaugedata.h"

#include <QJsonObject>
#include <QString>

/// What the format promises, written down a second time and from tables, to hold the readers against.

/// The JSON form of the record that a reader must make of a document's layer object: the default record with
/// every value that the object carries in its right type.
QJsonObject expectedRecord(const QJsonObject &layer);

/// Whether a text of the older form has fields enough to be read.
bool isOlderForm(const QString &text);

/// The record that a reader must make of a text of the older form, when @a before is what the record holds.
gaugeData expectedRecord(const QString &text, const gaugeData &before);

/// Whether two records are the same in every field, to the last bit of every number.
bool sameRecord(const gaugeData &a, const gaugeData &b);

#endif
