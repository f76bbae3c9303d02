#include "support/records.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <bit>
#include <optional>

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
    void single(const char *name, Type gaugeData::*member, const char *path, const char *control,
                qsizetype position, const Value &initial, std::optional<Value> other = {})
    {
        add<Type>(
            name, QLatin1String(path), QLatin1String(control), position, initial,
            other.value_or(otherThan<Type>(initial)),
            [member](const gaugeData &data) { return data.*member; },
            [member](gaugeData &data, const Type &value) { data.*member = value; });
    }

    /// %1 in @a path stands for the index, %1 in @a control for the index plus 1. The elements' text
    /// positions follow one another.
    template <typename Type, std::size_t size>
    void array(const char *name, std::array<Type, size> gaugeData::*member, const char *path,
               const char *control, qsizetype position, const std::array<Value, size> &initial)
    {
        for (std::size_t i = 0; i < size; ++i) {
            add<Type>(
                QByteArray(name) + '[' + QByteArray::number(static_cast<int>(i)) + ']',
                QString(QLatin1String(path)).arg(i), QString(QLatin1String(control)).arg(i + 1),
                position + static_cast<qsizetype>(i), initial.at(i), otherThan<Type>(initial.at(i)),
                [member, i](const gaugeData &data) { return (data.*member).at(i); },
                [member, i](gaugeData &data, const Type &value) { (data.*member).at(i) = value; });
        }
    }

    template <typename Type>
    void font(const char *attribute, const char *path, const Value &initial, const Value &other,
              const std::function<Type(const QFont &)> &get,
              const std::function<void(QFont &, const Type &)> &set)
    {
        add<Type>(
            attribute, QLatin1String(path), QStringLiteral("tickCountFontButton"), GaugeField::insideFont,
            initial, other, [get](const gaugeData &data) { return get(data.tickCountFont); },
            [set](gaugeData &data, const Type &value) { set(data.tickCountFont, value); });
    }

private:
    template <typename Type>
    void add(const QByteArray &name, const QString &path, const QString &control, qsizetype position,
             const Value &initial, const Value &other, const std::function<Type(const gaugeData &)> &get,
             const std::function<void(gaugeData &, const Type &)> &set)
    {
        fields.append({name, path, control, position, kindOf<Type>(), initial.inRecord, initial.inJson,
                       initial.asText, other.inRecord, other.inJson, other.asText,
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

    /// Numbers, integers and colours differ from field to field, so that a test notices two swapped fields.
    template <typename Type>
    [[nodiscard]] Value otherThan(const Value &initial) const
    {
        const int place = static_cast<int>(fields.size());
        if constexpr (std::is_same_v<Type, double>) {
            const double hundredths = (place + 1) / 100.0;
            return {hundredths, hundredths, QString::number(hundredths)};
        } else if constexpr (std::is_same_v<Type, int>) {
            return integer(11 + place);
        } else if constexpr (std::is_same_v<Type, bool>) {
            return flag(!initial.inRecord.toBool());
        } else {
            const QString name = QStringLiteral("#%1cafe").arg(16 + place, 0, 16);
            return {QColor(16 + place, 0xca, 0xfe), name, name};
        }
    }
};

QList<GaugeField> buildFields()
{
    const Value zero = number(0.0, "0");
    const Value one = number(1.0, "1");
    const Value wholeSweep = number(120.0, "120");

    Table table;
    table.single("startAngle", &gaugeData::startAngle, "gauge/startAngle", "gaugeStartAngleSpinBox", 0, zero);
    table.single("angleLength", &gaugeData::angleLength, "gauge/angleLength", "gaugeAngleLengthSpinBox", 1,
                 wholeSweep);
    table.single("bias", &gaugeData::bias, "gauge/bias", "gaugeBiasSpinBox", 2, number(0.5, "0.5"));
    table.single("midpointBias", &gaugeData::midpointBias, "gauge/midpointBias", "biasTypeComboBox", 3,
                 flag(false));
    table.single("roundedTickCaps", &gaugeData::roundedTickCaps, "gauge/roundedTickCaps",
                 "roundedTickCapsCheckBox", 4, flag(false));
    table.array("divisionCount", &gaugeData::divisionCount, "divisions/%1/count", "gaugeDivisions%1SpinBox",
                5, {integer(4), integer(1), integer(1)});
    table.array("divisionInnerRadius", &gaugeData::divisionInnerRadius, "divisions/%1/innerRadius",
                "gaugeDivisions%1InnerRadiusSpinBox", 8,
                {number(0.8, "0.8"), number(0.9, "0.9"), number(0.95, "0.95")});
    table.array("divisionOuterRadius", &gaugeData::divisionOuterRadius, "divisions/%1/outerRadius",
                "gaugeDivisions%1OuterRadiusSpinBox", 11, {one, one, one});
    table.array("divisionLineWidth", &gaugeData::divisionLineWidth, "divisions/%1/width",
                "gaugeDivisions%1WidthSpinBox", 14, {zero, zero, zero});
    table.array("divisionColor", &gaugeData::divisionColor, "divisions/%1/color",
                "gaugeDivisions%1ColorButton", 17, {white, white, white});
    table.single("roundedArcCaps", &gaugeData::roundedArcCaps, "gauge/roundedArcCaps",
                 "roundedArcCapsCheckBox", 20, flag(false));
    table.array("arcStartAngle", &gaugeData::arcStartAngle, "arcs/%1/startAngle", "arc%1StartAngleSpinBox",
                21, {zero, zero, zero, zero});
    table.array("arcAngleLength", &gaugeData::arcAngleLength, "arcs/%1/angleLength",
                "arc%1AngleLengthSpinBox", 25, {wholeSweep, zero, zero, zero});
    table.array("arcRadius", &gaugeData::arcRadius, "arcs/%1/radius", "arc%1RadiusSpinBox", 29,
                {one, one, one, one});
    table.array("arcWidth", &gaugeData::arcWidth, "arcs/%1/width", "arc%1WidthSpinBox", 33,
                {zero, zero, zero, zero});
    table.array("arcColor", &gaugeData::arcColor, "arcs/%1/color", "arc%1ColorButton", 37,
                {green, yellow, red, white});
    table.single("tickCountEnabled", &gaugeData::tickCountEnabled, "ticks/enabled", "tickCountCheckBox", 41,
                 flag(true));
    table.single("tickCountStart", &gaugeData::tickCountStart, "ticks/start", "tickCountStartSpinBox", 42,
                 zero);
    table.single("tickCountIncrement", &gaugeData::tickCountIncrement, "ticks/increment",
                 "tickCountIncrementSpinBox", 43, one);
    table.single("tickCountDecimalPlaces", &gaugeData::tickCountDecimalPlaces, "ticks/decimalPlaces",
                 "tickCountDecimalPlacesSpinBox", 44, integer(0), integer(3));
    table.single("tickCountRadius", &gaugeData::tickCountRadius, "ticks/radius", "tickCountRadiusSpinBox", 45,
                 number(0.74, "0.74"));
    // The comma-separated form has the next two the other way round.
    table.single("tickCountRotate", &gaugeData::tickCountRotate, "ticks/rotate", "tickCountRotateCheckBox",
                 47, flag(false));
    table.single("tickCountSkipFirst", &gaugeData::tickCountSkipFirst, "ticks/skipFirst",
                 "skipFirstTickCheckBox", 46, flag(false));
    table.font<QString>(
        "tickCountFont.family", "ticks/font/family",
        {QStringLiteral("Sans Serif"), QStringLiteral("Sans Serif"), QString()},
        {QStringLiteral("DejaVu Serif"), QStringLiteral("DejaVu Serif"), QString()},
        [](const QFont &font) { return font.family(); },
        [](QFont &font, const QString &family) { font.setFamily(family); });
    table.font<int>(
        "tickCountFont.pointSize", "ticks/font/pointSize", {10, 10, QString()}, {17, 17, QString()},
        [](const QFont &font) { return font.pointSize(); },
        [](QFont &font, int size) { font.setPointSize(size); });
    table.font<bool>(
        "tickCountFont.bold", "ticks/font/bold", {false, false, QString()}, {true, true, QString()},
        [](const QFont &font) { return font.bold(); }, [](QFont &font, bool bold) { font.setBold(bold); });
    table.font<bool>(
        "tickCountFont.italic", "ticks/font/italic", {false, false, QString()}, {true, true, QString()},
        [](const QFont &font) { return font.italic(); },
        [](QFont &font, bool italic) { font.setItalic(italic); });
    table.single("tickCountColor", &gaugeData::tickCountColor, "ticks/color", "tickColorButton",
                 GaugeField::lastPosition, white);
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

gaugeData sampleLayer(int number)
{
    gaugeData data;
    for (const GaugeField &field : gaugeFields())
        field.set(data, field.other);
    data.startAngle += number;
    data.tickCountStart += number;
    data.divisionCount[0] += number;
    data.tickCountColor.setBlue(data.tickCountColor.blue() - number);
    return data;
}

QStringList differingFields(const gaugeData &one, const gaugeData &other)
{
    // Bit by bit, so that a value that is not a number equals itself, and the two zeros differ.
    const auto same = [](const QVariant &a, const QVariant &b) {
        return a.metaType() == QMetaType::fromType<double>()
                   ? std::bit_cast<quint64>(a.toDouble()) == std::bit_cast<quint64>(b.toDouble())
                   : a == b;
    };
    QStringList names;
    for (const GaugeField &field : gaugeFields()) {
        if (!same(field.get(one), field.get(other)))
            names.append(QString::fromLatin1(field.name));
    }
    return names;
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
