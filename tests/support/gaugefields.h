#ifndef GAUGEFIELDS_H
#define GAUGEFIELDS_H

#include "model/gaugedata.h"

#include <QByteArray>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

#include <functional>

/// One value of a layer's record as tests see it: every element of an array and every written attribute of
/// the label font is a field of its own.
struct GaugeField
{
    enum Kind { Number, Integer, Flag, Color, Text };

    static constexpr qsizetype lastPosition = -1;
    static constexpr qsizetype insideFont = -2;

    QByteArray name;    ///< As in the record, with the element's index: "divisionCount[2]".
    QString path;       ///< Where the layer's JSON object has it: "divisions/2/count".
    qsizetype position; ///< Its place in the comma-separated form, or one of the constants above.
    Kind kind;
    QVariant initial; ///< What a record starts with.
    QJsonValue initialJson;
    QString initialText; ///< As a field of the comma-separated form; null for the font's attributes.
    QVariant other;      ///< A value that no field of this kind starts with.
    QJsonValue otherJson;
    QString otherText;
    std::function<QVariant(const gaugeData &)> get;
    std::function<void(gaugeData &, const QVariant &)> set;
};

/// Every field of a record, in the order of the record.
const QList<GaugeField> &gaugeFields();

/// The field named @a name, which must be one.
const GaugeField &gaugeField(const QByteArray &name);

/// A record whose every field has its other value.
gaugeData recordOfOtherValues();

/// Name and value of every field, for comparing records whole. QFont and QColor are compared as Qt does, so
/// alpha counts.
QMap<QByteArray, QVariant> valuesOf(const gaugeData &data);

/// The value at @a path ("ticks/font/family"; numbers are indexes of arrays), undefined when there is none.
QJsonValue valueAt(const QJsonValue &json, const QString &path);

/// @a json with @a value at @a path. Objects and arrays on the way are made where there are none, and arrays
/// are filled up with empty objects; an undefined value removes the key or the element.
QJsonObject withValueAt(const QJsonObject &json, const QString &path, const QJsonValue &value);

#endif
