#ifndef RECORDS_H
#define RECORDS_H

#include "model/gaugedata.h"

#include <QByteArray>
#include <QJsonValue>
#include <QList>
#include <QMap>
#include <QString>
#include <QVariant>

#include <functional>

/// One value of a layer. Each array element and each font attribute that is written to files is one field.
struct GaugeField
{
    enum Kind { Number, Integer, Flag, Color, Text };

    static constexpr qsizetype lastPosition = -1;
    static constexpr qsizetype insideFont = -2;

    QByteArray name;    ///< The name of the member, with its index: "divisionCount[2]".
    QString path;       ///< The path in the layer's JSON object: "divisions/2/count".
    QString control;    ///< The object name of its control.
    qsizetype position; ///< The index in the comma-separated format, or one of the constants above.
    Kind kind;
    QVariant initial; ///< The default.
    QVariant other;   ///< A value that is not the default and that the control accepts.
    std::function<QVariant(const gaugeData &)> get;
    std::function<void(gaugeData &, const QVariant &)> set;
};

/// All fields in the order of the record.
const QList<GaugeField> &gaugeFields();

/// The field with this name, which must exist.
const GaugeField &gaugeField(const QByteArray &name);

/// A layer in which each field has its `other` value. Layers with different numbers differ in some fields.
[[nodiscard]] gaugeData sampleLayer(int number = 0);

/// The names of the fields in which two layers differ. NaN equals NaN, 0.0 differs from -0.0. Contains
/// "tickCountFont" if the fonts differ only in attributes that are no fields.
[[nodiscard]] QStringList differingFields(const gaugeData &one, const gaugeData &other);

/// The values of all fields by name.
QMap<QByteArray, QVariant> valuesOf(const gaugeData &data);

/// A field's value as it is written to JSON.
[[nodiscard]] QJsonValue asJson(const QVariant &value);

/// A field's value as it is written to the comma-separated format.
[[nodiscard]] QString asText(const QVariant &value);

/// The value at @a path, such as "divisions/2/count". Undefined if there is none.
QJsonValue valueAt(const QJsonValue &json, const QString &path);

/// A copy of @a json with @a value at @a path. Creates missing objects and arrays. Undefined removes the
/// value.
QJsonObject withValueAt(const QJsonObject &json, const QString &path, const QJsonValue &value);

#endif
