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

/// One value of a layer's record. Every element of an array and every written attribute of the label font is
/// a field of its own.
struct GaugeField
{
    enum Kind { Number, Integer, Flag, Color, Text };

    static constexpr qsizetype lastPosition = -1;
    static constexpr qsizetype insideFont = -2;

    QByteArray name;    ///< As in the record, with the element's index: "divisionCount[2]".
    QString path;       ///< In the layer's JSON object: "divisions/2/count".
    QString control;    ///< The object name of the control that shows it.
    qsizetype position; ///< The index in the comma-separated form, or one of the constants above.
    Kind kind;
    QVariant initial; ///< The default.
    QJsonValue initialJson;
    QString initialText; ///< As a field of the comma-separated form; null for the font's attributes.
    QVariant other;      ///< Differs from the default; the control can show it.
    QJsonValue otherJson;
    QString otherText;
    std::function<QVariant(const gaugeData &)> get;
    std::function<void(gaugeData &, const QVariant &)> set;
};

/// Every field of a record, in the order of the record.
const QList<GaugeField> &gaugeFields();

/// The field named @a name, which must be one.
const GaugeField &gaugeField(const QByteArray &name);

/// A record that differs from the default in every field, and from one of another @a number in some. The
/// editor's controls can show it as it is.
[[nodiscard]] gaugeData sampleLayer(int number = 0);

/// The names of the fields in which two records differ. Doubles are compared bit by bit.
[[nodiscard]] QStringList differingFields(const gaugeData &one, const gaugeData &other);

/// Name and value of every field, for comparing whole records. Colours are compared with their alpha.
QMap<QByteArray, QVariant> valuesOf(const gaugeData &data);

/// The value at @a path ("ticks/font/family"; numbers are array indexes). Undefined when there is none.
QJsonValue valueAt(const QJsonValue &json, const QString &path);

/// @a json with @a value at @a path. Missing objects and arrays on the path are created, and arrays are
/// filled with empty objects. An undefined value removes the key or the element.
QJsonObject withValueAt(const QJsonObject &json, const QString &path, const QJsonValue &value);

#endif
