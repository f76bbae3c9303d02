#ifndef GAUGEORACLE_H
#define GAUGEORACLE_H

#include "model/gaugedata.h"

#include <QJsonObject>
#include <QString>

// The formats, written a second time with the table of fields from tests/support/records.h.

/// The layer that must be read from a layer's JSON object.
gaugeData expectedLayer(const QJsonObject &json);

/// Whether a text in the comma-separated format has enough fields.
bool hasEnoughFields(const QString &text);

/// The layer that must be read from a text in the comma-separated format into @a layer.
gaugeData expectedLayer(const QString &text, gaugeData layer);

#endif
