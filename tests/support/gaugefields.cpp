#include "support/gaugefields.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>

namespace {

/// A value in its three forms: in the record, in JSON and as comma-separated text.
struct Value
{
    QVariant inRecord;
    QJsonValue inJson;
    QString asText;
};

Value number(double value, const char *text)
{
    return {value, value, QLatin1String(text)};
}

Value integer(int value)
{
    return {value, value, QString::number(value)};
}

Value flag(bool value)
{
    return {value, value, value ? QStringLiteral("1") : QStringLiteral("0")};
}

Value color(QRgb rgb, const char *name)
{
    return {QColor(rgb), QLatin1String(name), QLatin1String(name)};
}

const Value white = color(0xffffffff, "#ffffff");
const Value green = color(0xff00ff00, "#00ff00");
const Value yellow = color(0xffffff00, "#ffff00");
const Value red = color(0xffff0000, "#ff0000");

/// Collects the fields, giving each the next place in the order of the record.
class Table
{
public:
    QList<GaugeField> fields;

    template <typename Type>
    void single(const char *name, Type gaugeData::*member, const char *path, qsizetype position,
                const Value &initial)
    {
        add<Type>(
            name, QLatin1String(path), position, initial,
            [member](const gaugeData &data) { return data.*member; },
            [member](gaugeData &data, const Type &value) { data.*member = value; });
    }

    /// @a path has %1 in place of the index; the elements' text positions follow one another.
    template <typename Type, std::size_t size>
    void array(const char *name, std::array<Type, size> gaugeData::*member, const char *path,
               qsizetype position, const std::array<Value, size> &initial)
    {
        for (std::size_t i = 0; i < size; ++i) {
            add<Type>(
                QByteArray(name) + '[' + QByteArray::number(static_cast<int>(i)) + ']',
                QString(QLatin1String(path)).arg(i), position + static_cast<qsizetype>(i), initial.at(i),
                [member, i](const gaugeData &data) { return (data.*member).at(i); },
                [member, i](gaugeData &data, const Type &value) { (data.*member).at(i) = value; });
        }
    }

    template <typename Type>
    void font(const char *attribute, const char *path, const Value &initial,
              const std::function<Type(const QFont &)> &get,
              const std::function<void(QFont &, const Type &)> &set)
    {
        add<Type>(
            attribute, QLatin1String(path), GaugeField::insideFont, initial,
            [get](const gaugeData &data) { return get(data.tickCountFont); },
            [set](gaugeData &data, const Type &value) { set(data.tickCountFont, value); });
    }

private:
    template <typename Type>
    void add(const QByteArray &name, const QString &path, qsizetype position, const Value &initial,
             const std::function<Type(const gaugeData &)> &get,
             const std::function<void(gaugeData &, const Type &)> &set)
    {
        const Value other = otherThan<Type>(initial);
        fields.append({name, path, position, kindOf<Type>(), initial.inRecord, initial.inJson, initial.asText,
                       other.inRecord, other.inJson, other.asText,
                       [get](const gaugeData &data) { return QVariant::fromValue(get(data)); },
                       [set](gaugeData &data, const QVariant &value) { set(data, value.value<Type>()); }});
    }

    template <typename Type>
    static GaugeField::Kind kindOf()
    {
        if constexpr (std::is_same_v<Type, double>)
            return GaugeField::Number;
        else if constexpr (std::is_same_v<Type, int>)
            return GaugeField::Integer;
        else if constexpr (std::is_same_v<Type, bool>)
            return GaugeField::Flag;
        else if constexpr (std::is_same_v<Type, QColor>)
            return GaugeField::Color;
        else
            return GaugeField::Text;
    }

    /// Numbers, integers and colours differ from field to field, so that a mix-up of two fields shows.
    template <typename Type>
    [[nodiscard]] Value otherThan(const Value &initial) const
    {
        const int place = static_cast<int>(fields.size());
        if constexpr (std::is_same_v<Type, double>) {
            // 1.25, 2.25, ... are exact in binary, and short enough for six digits.
            return {place + 1.25, place + 1.25, QString::number(place + 1) + QStringLiteral(".25")};
        } else if constexpr (std::is_same_v<Type, int>) {
            return integer(100 + place);
        } else if constexpr (std::is_same_v<Type, bool>) {
            return flag(!initial.inRecord.toBool());
        } else if constexpr (std::is_same_v<Type, QColor>) {
            const QString name = QStringLiteral("#%1cafe").arg(16 + place, 0, 16);
            return {QColor(16 + place, 0xca, 0xfe), name, name};
        } else {
            return {QStringLiteral("DejaVu Serif"), QStringLiteral("DejaVu Serif"), QString()};
        }
    }
};

QList<GaugeField> buildFields()
{
    const Value zero = number(0.0, "0");
    const Value one = number(1.0, "1");
    const Value wholeSweep = number(120.0, "120");

    Table table;
    table.single("startAngle", &gaugeData::startAngle, "gauge/startAngle", 0, zero);
    table.single("angleLength", &gaugeData::angleLength, "gauge/angleLength", 1, wholeSweep);
    table.single("bias", &gaugeData::bias, "gauge/bias", 2, number(0.5, "0.5"));
    table.single("midpointBias", &gaugeData::midpointBias, "gauge/midpointBias", 3, flag(false));
    table.single("roundedTickCaps", &gaugeData::roundedTickCaps, "gauge/roundedTickCaps", 4, flag(false));
    table.array("divisionCount", &gaugeData::divisionCount, "divisions/%1/count", 5,
                {integer(4), integer(1), integer(1)});
    table.array("divisionInnerRadius", &gaugeData::divisionInnerRadius, "divisions/%1/innerRadius", 8,
                {number(0.8, "0.8"), number(0.9, "0.9"), number(0.95, "0.95")});
    table.array("divisionOuterRadius", &gaugeData::divisionOuterRadius, "divisions/%1/outerRadius", 11,
                {one, one, one});
    table.array("divisionLineWidth", &gaugeData::divisionLineWidth, "divisions/%1/width", 14,
                {zero, zero, zero});
    table.array("divisionColor", &gaugeData::divisionColor, "divisions/%1/color", 17, {white, white, white});
    table.single("roundedArcCaps", &gaugeData::roundedArcCaps, "gauge/roundedArcCaps", 20, flag(false));
    table.array("arcStartAngle", &gaugeData::arcStartAngle, "arcs/%1/startAngle", 21,
                {zero, zero, zero, zero});
    table.array("arcAngleLength", &gaugeData::arcAngleLength, "arcs/%1/angleLength", 25,
                {wholeSweep, zero, zero, zero});
    table.array("arcRadius", &gaugeData::arcRadius, "arcs/%1/radius", 29, {one, one, one, one});
    table.array("arcWidth", &gaugeData::arcWidth, "arcs/%1/width", 33, {zero, zero, zero, zero});
    table.array("arcColor", &gaugeData::arcColor, "arcs/%1/color", 37, {green, yellow, red, white});
    table.single("tickCountEnabled", &gaugeData::tickCountEnabled, "ticks/enabled", 41, flag(true));
    table.single("tickCountStart", &gaugeData::tickCountStart, "ticks/start", 42, zero);
    table.single("tickCountIncrement", &gaugeData::tickCountIncrement, "ticks/increment", 43, one);
    table.single("tickCountDecimalPlaces", &gaugeData::tickCountDecimalPlaces, "ticks/decimalPlaces", 44,
                 integer(0));
    table.single("tickCountRadius", &gaugeData::tickCountRadius, "ticks/radius", 45, number(0.74, "0.74"));
    // The comma-separated form has the next two the other way round.
    table.single("tickCountRotate", &gaugeData::tickCountRotate, "ticks/rotate", 47, flag(false));
    table.single("tickCountSkipFirst", &gaugeData::tickCountSkipFirst, "ticks/skipFirst", 46, flag(false));
    table.font<QString>(
        "tickCountFont.family", "ticks/font/family",
        {QStringLiteral("Sans Serif"), QStringLiteral("Sans Serif"), QString()},
        [](const QFont &font) { return font.family(); },
        [](QFont &font, const QString &family) { font.setFamily(family); });
    table.font<int>(
        "tickCountFont.pointSize", "ticks/font/pointSize", {10, 10, QString()},
        [](const QFont &font) { return font.pointSize(); },
        [](QFont &font, int size) { font.setPointSize(size); });
    table.font<bool>(
        "tickCountFont.bold", "ticks/font/bold", {false, false, QString()},
        [](const QFont &font) { return font.bold(); }, [](QFont &font, bool bold) { font.setBold(bold); });
    table.font<bool>(
        "tickCountFont.italic", "ticks/font/italic", {false, false, QString()},
        [](const QFont &font) { return font.italic(); },
        [](QFont &font, bool italic) { font.setItalic(italic); });
    table.single("tickCountColor", &gaugeData::tickCountColor, "ticks/color", GaugeField::lastPosition,
                 white);
    return table.fields;
}

/// @a json with @a value at the rest of the path, @a keys.
QJsonValue changed(const QJsonValue &json, const QStringList &keys, const QJsonValue &value)
{
    if (keys.isEmpty())
        return value;

    bool isIndex = false;
    const qsizetype index = keys.first().toInt(&isIndex);
    if (!isIndex) {
        QJsonObject object = json.toObject();
        object.insert(keys.first(), changed(object.value(keys.first()), keys.sliced(1), value));
        return object;
    }
    QJsonArray array = json.toArray();
    while (array.size() <= index)
        array.append(QJsonObject());
    const QJsonValue element = changed(array.at(index), keys.sliced(1), value);
    if (element.isUndefined())
        array.removeAt(index);
    else
        array.replace(index, element);
    return array;
}

} // namespace

const QList<GaugeField> &gaugeFields()
{
    static const QList<GaugeField> fields = buildFields();
    return fields;
}

const GaugeField &gaugeField(const QByteArray &name)
{
    const auto field = std::find_if(gaugeFields().begin(), gaugeFields().end(),
                                    [&name](const GaugeField &candidate) { return candidate.name == name; });
    if (field == gaugeFields().end())
        qFatal("a record has no field %s", name.constData());
    return *field;
}

gaugeData recordOfOtherValues()
{
    gaugeData data;
    for (const GaugeField &field : gaugeFields())
        field.set(data, field.other);
    return data;
}

QMap<QByteArray, QVariant> valuesOf(const gaugeData &data)
{
    QMap<QByteArray, QVariant> values;
    for (const GaugeField &field : gaugeFields())
        values.insert(field.name, field.get(data));
    values.insert("tickCountFont", data.tickCountFont);
    return values;
}

QJsonValue valueAt(const QJsonValue &json, const QString &path)
{
    QJsonValue value = json;
    for (const QString &key : path.split(QLatin1Char('/')))
        value = value.isArray() ? value.toArray().at(key.toInt()) : value.toObject().value(key);
    return value;
}

QJsonObject withValueAt(const QJsonObject &json, const QString &path, const QJsonValue &value)
{
    return changed(json, path.split(QLatin1Char('/')), value).toObject();
}
