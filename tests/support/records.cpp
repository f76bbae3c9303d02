#include "support/records.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

template <typename Type>
GaugeField::Kind kindOf()
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

/// Numbers and colours depend on @a index, so that a test notices when two fields are swapped.
template <typename Type>
Type otherThan(const Type &initial, int index)
{
    if constexpr (std::is_same_v<Type, double>)
        return (index + 1) / 100.0;
    else if constexpr (std::is_same_v<Type, int>)
        return index + 11;
    else if constexpr (std::is_same_v<Type, bool>)
        return !initial;
    else
        return QColor(index + 16, 0xca, 0xfe);
}

class FieldTable
{
public:
    QList<GaugeField> fields;

    template <typename Type>
    void add(const char *name, Type gaugeData::*member, const char *path, const char *control,
             qsizetype position, std::optional<Type> other = {})
    {
        const Type value = other ? *other : otherThan(gaugeData().*member, int(fields.size()));
        append<Type>(
            name, QLatin1String(path), QLatin1String(control), position, value,
            [member](const gaugeData &data) { return data.*member; },
            [member](gaugeData &data, const Type &newValue) { data.*member = newValue; });
    }

    /// Adds each element of an array. %1 is the index in @a path and the index plus 1 in @a control. The
    /// elements have consecutive positions.
    template <typename Type, std::size_t size>
    void addArray(const char *name, std::array<Type, size> gaugeData::*member, const char *path,
                  const char *control, qsizetype position)
    {
        for (std::size_t i = 0; i < size; ++i) {
            append<Type>(
                name + QByteArray("[%1]").replace("%1", QByteArray::number(qulonglong(i))),
                QString(QLatin1String(path)).arg(i), QString(QLatin1String(control)).arg(i + 1),
                position + qsizetype(i), otherThan((gaugeData().*member).at(i), int(fields.size())),
                [member, i](const gaugeData &data) { return (data.*member).at(i); },
                [member, i](gaugeData &data, const Type &value) { (data.*member).at(i) = value; });
        }
    }

    template <typename Type>
    void addFontAttribute(const char *name, const Type &other, Type (QFont::*get)() const,
                          const std::function<void(QFont &, const Type &)> &set)
    {
        append<Type>(
            QByteArray("tickCountFont.") + name, "ticks/font/"_L1 + QLatin1String(name),
            u"tickCountFontButton"_s, GaugeField::insideFont, other,
            [get](const gaugeData &data) { return (data.tickCountFont.*get)(); },
            [set](gaugeData &data, const Type &value) { set(data.tickCountFont, value); });
    }

private:
    template <typename Type>
    void append(const QByteArray &name, const QString &path, const QString &control, qsizetype position,
                const Type &other, const std::function<Type(const gaugeData &)> &get,
                const std::function<void(gaugeData &, const Type &)> &set)
    {
        fields.append({name, path, control, position, kindOf<Type>(), QVariant::fromValue(get(gaugeData())),
                       QVariant::fromValue(other),
                       [get](const gaugeData &data) { return QVariant::fromValue(get(data)); },
                       [set](gaugeData &data, const QVariant &value) { set(data, value.value<Type>()); }});
    }
};

QList<GaugeField> buildFields()
{
    using G = gaugeData;
    FieldTable table;
    table.add("startAngle", &G::startAngle, "gauge/startAngle", "gaugeStartAngleSpinBox", 0);
    table.add("angleLength", &G::angleLength, "gauge/angleLength", "gaugeAngleLengthSpinBox", 1);
    table.add("bias", &G::bias, "gauge/bias", "gaugeBiasSpinBox", 2);
    table.add("midpointBias", &G::midpointBias, "gauge/midpointBias", "biasTypeComboBox", 3);
    table.add("roundedTickCaps", &G::roundedTickCaps, "gauge/roundedTickCaps", "roundedTickCapsCheckBox", 4);
    table.addArray("divisionCount", &G::divisionCount, "divisions/%1/count", "gaugeDivisions%1SpinBox", 5);
    table.addArray("divisionInnerRadius", &G::divisionInnerRadius, "divisions/%1/innerRadius",
                   "gaugeDivisions%1InnerRadiusSpinBox", 8);
    table.addArray("divisionOuterRadius", &G::divisionOuterRadius, "divisions/%1/outerRadius",
                   "gaugeDivisions%1OuterRadiusSpinBox", 11);
    table.addArray("divisionLineWidth", &G::divisionLineWidth, "divisions/%1/width",
                   "gaugeDivisions%1WidthSpinBox", 14);
    table.addArray("divisionColor", &G::divisionColor, "divisions/%1/color", "gaugeDivisions%1ColorButton",
                   17);
    table.add("roundedArcCaps", &G::roundedArcCaps, "gauge/roundedArcCaps", "roundedArcCapsCheckBox", 20);
    table.addArray("arcStartAngle", &G::arcStartAngle, "arcs/%1/startAngle", "arc%1StartAngleSpinBox", 21);
    table.addArray("arcAngleLength", &G::arcAngleLength, "arcs/%1/angleLength", "arc%1AngleLengthSpinBox",
                   25);
    table.addArray("arcRadius", &G::arcRadius, "arcs/%1/radius", "arc%1RadiusSpinBox", 29);
    table.addArray("arcWidth", &G::arcWidth, "arcs/%1/width", "arc%1WidthSpinBox", 33);
    table.addArray("arcColor", &G::arcColor, "arcs/%1/color", "arc%1ColorButton", 37);
    table.add("tickCountEnabled", &G::tickCountEnabled, "ticks/enabled", "tickCountCheckBox", 41);
    table.add("tickCountStart", &G::tickCountStart, "ticks/start", "tickCountStartSpinBox", 42);
    table.add("tickCountIncrement", &G::tickCountIncrement, "ticks/increment", "tickCountIncrementSpinBox",
              43);
    table.add("tickCountDecimalPlaces", &G::tickCountDecimalPlaces, "ticks/decimalPlaces",
              "tickCountDecimalPlacesSpinBox", 44, std::optional(3));
    table.add("tickCountRadius", &G::tickCountRadius, "ticks/radius", "tickCountRadiusSpinBox", 45);
    // The comma-separated format has the next two in reverse order.
    table.add("tickCountRotate", &G::tickCountRotate, "ticks/rotate", "tickCountRotateCheckBox", 47);
    table.add("tickCountSkipFirst", &G::tickCountSkipFirst, "ticks/skipFirst", "skipFirstTickCheckBox", 46);
    table.addFontAttribute<QString>("family", u"DejaVu Serif"_s, &QFont::family, &QFont::setFamily);
    table.addFontAttribute<int>("pointSize", 17, &QFont::pointSize, &QFont::setPointSize);
    table.addFontAttribute<bool>("bold", true, &QFont::bold, &QFont::setBold);
    table.addFontAttribute<bool>("italic", true, &QFont::italic, &QFont::setItalic);
    table.add("tickCountColor", &G::tickCountColor, "ticks/color", "tickColorButton",
              GaugeField::lastPosition);
    return table.fields;
}

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

bool isSame(const QVariant &a, const QVariant &b)
{
    if (a.metaType() != QMetaType::fromType<double>())
        return a == b;
    return std::bit_cast<quint64>(a.toDouble()) == std::bit_cast<quint64>(b.toDouble()) ||
           (std::isnan(a.toDouble()) && std::isnan(b.toDouble()));
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
        qFatal("A layer has no field %s", name.constData());
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
    QStringList names;
    bool fontFieldDiffers = false;
    for (const GaugeField &field : gaugeFields()) {
        if (!isSame(field.get(one), field.get(other))) {
            names.append(QString::fromLatin1(field.name));
            fontFieldDiffers = fontFieldDiffers || field.position == GaugeField::insideFont;
        }
    }
    if (!fontFieldDiffers && one.tickCountFont != other.tickCountFont)
        names.append(u"tickCountFont"_s);
    return names;
}

QMap<QByteArray, QVariant> valuesOf(const gaugeData &data)
{
    QMap<QByteArray, QVariant> values;
    for (const GaugeField &field : gaugeFields())
        values.insert(field.name, field.get(data));
    return values;
}

QJsonValue asJson(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<QColor>() ? QJsonValue(value.value<QColor>().name())
                                                             : QJsonValue::fromVariant(value);
}

QString asText(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<bool>())
        return value.toBool() ? u"1"_s : u"0"_s;
    return value.metaType() == QMetaType::fromType<double>() ? QString::number(value.toDouble())
                                                             : value.toString();
}

QJsonValue valueAt(const QJsonValue &json, const QString &path)
{
    QJsonValue value = json;
    for (const QString &key : path.split(u'/')) {
        bool isIndex = false;
        const int index = key.toInt(&isIndex);
        value = isIndex ? value.toArray().at(index) : value.toObject().value(key);
    }
    return value;
}

QJsonObject withValueAt(const QJsonObject &json, const QString &path, const QJsonValue &value)
{
    return changed(json, path.split(u'/'), value).toObject();
}
